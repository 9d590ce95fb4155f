#include "tools/model/axes.h"

#include <algorithm>
#include <cmath>

namespace model {
namespace {

using content::Vector;
using Axes = std::array<Vector, 3>;

double dot(const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// a - factor * b
Vector less(const Vector& a, const Vector& b, double factor = 1) {
  return {a[0] - factor * b[0], a[1] - factor * b[1], a[2] - factor * b[2]};
}

/// Of length 1; nothing for a vector of length 0.
std::optional<Vector> unit(const Vector& vector) {
  const double length = std::hypot(vector[0], vector[1], vector[2]);
  if (length == 0) return std::nullopt;
  return Vector{vector[0] / length, vector[1] / length, vector[2] / length};
}

/// A lies on the first axis, and B in the plane of the first two, as seen from the origin.
std::optional<Axes> rectangular(const CoordinateSystem& system) {
  const auto first = unit(system.a);
  if (!first) return std::nullopt;
  const auto third = unit(cross(*first, system.b));
  if (!third) return std::nullopt;
  return Axes{*first, cross(*third, *first), *third};
}

/// The third axis goes from A to B; the first points away from it, to the place.
std::optional<Axes> cylindrical(const CoordinateSystem& system, const Vector& place) {
  const auto third = unit(less(system.b, system.a));
  if (!third) return std::nullopt;
  const Vector arm = less(place, system.a);
  const auto first = unit(less(arm, *third, dot(arm, *third)));
  if (!first) return std::nullopt;
  return Axes{*first, cross(*third, *first), *third};
}

}  // namespace

content::LocalAxes axes_of(std::vector<CoordinateSystem> systems,
                           const content::Vertices& vertices) {
  return [systems = std::move(systems), &vertices](content::Key number,
                                                   content::Key vertex) -> std::optional<Axes> {
    if (number == 0) return Axes{Vector{1, 0, 0}, Vector{0, 1, 0}, Vector{0, 0, 1}};
    const auto system = std::ranges::find(systems, number, &CoordinateSystem::number);
    if (system == systems.end()) return std::nullopt;
    if (!system->is_cylindrical) return rectangular(*system);
    // They are in the order of their numbers.
    const auto found = std::ranges::lower_bound(vertices.ids, vertex);
    if (found == vertices.ids.end() || *found != vertex) return std::nullopt;
    return cylindrical(
        *system, vertices.coordinates[static_cast<std::size_t>(found - vertices.ids.begin())]);
  };
}

}  // namespace model
