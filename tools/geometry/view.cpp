#include "tools/geometry/view.h"

#include <algorithm>
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

Point best_direction(const Shape& shape) {
  const bool is_plane = std::ranges::all_of(shape.faces, [](const Face& face) {
    return face.family == Family::plane || face.family == Family::axisymmetric;
  });
  return is_plane && !shape.faces.empty() ? Point(Point::UnitZ()) : isometric();
}

}  // namespace geometry
