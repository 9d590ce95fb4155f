#include "tools/geometry/depth_buffer.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace geometry {
namespace {

// How much nearer than a sample something else must be to hide it: more than the rounding of the
// depths, and less than the distance between layers that can be told apart.
constexpr double tolerance = 0.05;

// Between a point and the samples about it a surface that is seen from its side falls back a
// little.
constexpr double tolerance_of_points = 0.75;

}  // namespace

DepthBuffer::DepthBuffer(int width, int height)
    : width_(width),
      height_(height),
      depths_(static_cast<std::size_t>(width) * height, -std::numeric_limits<float>::infinity()) {}

// Visits the samples in a triangle, those on its edges included, with the depth that it has there.
template <class Visit>
void DepthBuffer::visit_triangle(const Point& a, const Point& b, const Point& c,
                                 const Visit& visit) const {
  const double area = (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
  if (area == 0) return;
  const auto first = [](double low) { return std::max(0, static_cast<int>(std::ceil(low - 0.5))); };
  const auto last = [](double high, int size) {
    return std::min(size - 1, static_cast<int>(std::floor(high - 0.5)));
  };
  const int left = first(std::min({a.x(), b.x(), c.x()}));
  const int right = last(std::max({a.x(), b.x(), c.x()}), width_);
  const int top = first(std::min({a.y(), b.y(), c.y()}));
  const int bottom = last(std::max({a.y(), b.y(), c.y()}), height_);
  for (int row = top; row <= bottom; ++row) {
    const double y = row + 0.5;
    for (int column = left; column <= right; ++column) {
      const double x = column + 0.5;
      const double of_b = ((x - a.x()) * (c.y() - a.y()) - (y - a.y()) * (c.x() - a.x())) / area;
      const double of_c = ((b.x() - a.x()) * (y - a.y()) - (b.y() - a.y()) * (x - a.x())) / area;
      const double of_a = 1 - of_b - of_c;
      if (of_a < 0 || of_b < 0 || of_c < 0) continue;
      visit(static_cast<std::size_t>(row) * width_ + column,
            of_a * a.z() + of_b * b.z() + of_c * c.z());
    }
  }
}

template <class Visit>
void DepthBuffer::visit(std::span<const Point> polygon, const Visit& visit) const {
  for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
    visit_triangle(polygon[0], polygon[i], polygon[i + 1], visit);
  }
}

void DepthBuffer::add(std::span<const Point> polygon) {
  visit(polygon, [this](std::size_t sample, double depth) {
    depths_[sample] = std::max(depths_[sample], static_cast<float>(depth));
  });
}

DepthBuffer::Seen DepthBuffer::seen(std::span<const Point> polygon) const {
  bool has_seen = false;
  bool has_hidden = false;
  visit(polygon, [&](std::size_t sample, double depth) {
    (depth >= depths_[sample] - tolerance ? has_seen : has_hidden) = true;
  });
  if (has_seen) return has_hidden ? Seen::in_part : Seen::whole;
  if (has_hidden) return Seen::nothing;
  // It is smaller than the distance between samples; thousands of its sort may cover a surface.
  Point middle = Point::Zero();
  for (const Point& point : polygon) middle += point;
  middle /= static_cast<double>(polygon.size());
  return sees(middle) ? Seen::whole : Seen::nothing;
}

bool DepthBuffer::sees(const Point& point) const {
  const int column = static_cast<int>(std::floor(point.x()));
  const int row = static_cast<int>(std::floor(point.y()));
  for (int y = std::max(0, row - 1); y <= std::min(height_ - 1, row + 1); ++y) {
    for (int x = std::max(0, column - 1); x <= std::min(width_ - 1, column + 1); ++x) {
      if (point.z() >= depths_[static_cast<std::size_t>(y) * width_ + x] - tolerance_of_points) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace geometry
