#include "tools/content/axes.h"

#include <cmath>

namespace content {
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

std::optional<std::array<Vector, 3>> axes_at(const System& system, const Vector& place) {
  const auto& [is_cylindrical, a, b] = system;
  if (is_cylindrical) {
    Vector z = minus(b, a, 1);
    if (!normalise(z)) return std::nullopt;
    const Vector arm = minus(place, a, 1);
    Vector x = minus(arm, z, dot(arm, z));
    if (!normalise(x)) return std::nullopt;
    return std::array{x, cross(z, x), z};
  }
  Vector x = a;
  if (!normalise(x)) return std::nullopt;
  Vector y = minus(b, x, dot(b, x));
  if (!normalise(y)) return std::nullopt;
  return std::array{x, y, cross(x, y)};
}

}  // namespace content
