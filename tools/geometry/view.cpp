#include "tools/geometry/view.h"

#include <charconv>
#include <cmath>

namespace geometry {
namespace {

Point cross(const Point& a, const Point& b) {
  return {a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(),
          a.x() * b.y() - a.y() * b.x()};
}

std::optional<Point> read_axis(std::string_view text) {
  if (text.size() != 2 || (text[0] != '+' && text[0] != '-')) return {};
  const auto axis = std::string_view("xyz").find(text[1]);
  if (axis == std::string_view::npos) return {};
  return Point(Point::Unit(static_cast<Eigen::Index>(axis)) * (text[0] == '+' ? 1 : -1));
}

}  // namespace

View::View(const Point& from) : from_(from.normalized()) {
  const bool is_along_z = std::abs(from_.z()) > 0.999;
  const Point upwards = is_along_z ? Point::UnitY() : Point::UnitZ();
  right_ = cross(upwards, from_).normalized();
  up_ = cross(from_, right_);
}

Point isometric() { return Point(1, -1, 1).normalized(); }

std::optional<Point> read_direction(std::string_view text) {
  if (text == "iso") return isometric();
  if (const auto axis = read_axis(text)) return axis;
  Point result = Point::Zero();
  const char* at = text.data();
  const char* const end = at + text.size();
  for (int i = 0; i < 3; ++i) {
    if (i > 0 && (at == end || *at++ != ',')) return {};
    const auto [next, error] = std::from_chars(at, end, result[i]);
    if (error != std::errc() || !std::isfinite(result[i])) return {};
    at = next;
  }
  const double largest = result.cwiseAbs().maxCoeff();
  if (at != end || largest == 0) return {};
  return Point((result / largest).normalized());
}

Point best_direction(const std::vector<Point>& points) {
  if (points.empty()) return isometric();
  Point low = points.front();
  Point high = low;
  for (const Point& point : points) {
    low = low.cwiseMin(point);
    high = high.cwiseMax(point);
  }
  const Point size = high - low;
  const double flat = 1e-6 * size.maxCoeff();
  if (size.z() <= flat) return Point::UnitZ();
  if (size.y() <= flat) return -Point::UnitY();
  if (size.x() <= flat) return Point::UnitX();
  return isometric();
}

}  // namespace geometry
