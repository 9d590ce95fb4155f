#include "tools/deck/systems.h"

#include <cmath>

namespace deck {
namespace {

double dot(const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// a - factor * b
Vector minus(const Vector& a, const Vector& b, double factor) {
  return {a[0] - factor * b[0], a[1] - factor * b[1], a[2] - factor * b[2]};
}

bool normalise(Vector& v) {
  const double length = std::hypot(v[0], v[1], v[2]);
  if (!(length > 0) || !std::isfinite(length)) return false;
  for (double& component : v) component /= length;
  return true;
}

}  // namespace

std::optional<Vector> components_in(const Transform& transform, const Vector& place,
                                    const Vector& vector) {
  const auto& p = transform.points;
  const Vector a{p[0], p[1], p[2]};
  const Vector b{p[3], p[4], p[5]};
  Vector x{};
  Vector y{};
  Vector z{};
  if (transform.is_cylindrical) {
    // a and b lie on the axis; x points away from it.
    z = minus(b, a, 1);
    if (!normalise(z)) return std::nullopt;
    x = minus(place, a, 1);
    x = minus(x, z, dot(x, z));
    if (!normalise(x)) return std::nullopt;
    y = cross(z, x);
  } else {
    // a lies on x, and b in the plane of x and y.
    x = a;
    if (!normalise(x)) return std::nullopt;
    y = minus(b, x, dot(b, x));
    if (!normalise(y)) return std::nullopt;
    z = cross(x, y);
  }
  return Vector{dot(vector, x), dot(vector, y), dot(vector, z)};
}

content::LocalAxes axes_of(const Deck& deck) {
  return [&deck](content::Key system, content::Key node) -> std::optional<std::array<Vector, 3>> {
    const auto place = deck.index_of_node.find(node);
    if (!place || system < 1 || static_cast<std::size_t>(system) > deck.transforms.size()) {
      return std::nullopt;
    }
    const Transform& transform = deck.transforms[static_cast<std::size_t>(system) - 1];
    std::array<Vector, 3> axes{};
    for (std::size_t i = 0; i < 3; ++i) {
      Vector unit{};
      unit.at(i) = 1;
      const auto local = components_in(transform, deck.mesh.coordinates[*place], unit);
      if (!local) return std::nullopt;
      for (std::size_t axis = 0; axis < 3; ++axis) axes.at(axis).at(i) = local->at(axis);
    }
    return axes;
  };
}

content::NodeAxes node_axes_of(const Deck& deck) {
  return [&deck, axes = axes_of(deck)](content::Key node) -> std::optional<std::array<Vector, 3>> {
    const auto found = deck.transform_of_node.find(node);
    if (found == deck.transform_of_node.end()) return std::nullopt;
    return axes(found->second, node);
  };
}

}  // namespace deck
