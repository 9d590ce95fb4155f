#pragma once

#include <array>
#include <optional>

#include "tools/content/loads.h"

namespace content {

/// A system of coordinates as decks give it.
struct System {
  bool is_cylindrical = false;
  // Cylindrical: two points of the third axis; the first points away from it. Rectangular: a point
  // of the first axis, and one of the plane of the first two, as seen from the origin.
  Vector a{};
  Vector b{};
};

/// Its axes at a place, each of length 1; nothing where it has none.
std::optional<std::array<Vector, 3>> axes_at(const System& system, const Vector& place);

}  // namespace content
