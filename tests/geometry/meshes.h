#pragma once

#include <array>
#include <string>

#include "tools/mesh/mesh.h"

namespace tests {

/// A box from the origin with edges of the given lengths, cut into nx × ny × nz elements of one
/// type: C3D8, C3D20, C3D6, C3D15, C3D4 or C3D10, whose names may have letters behind them.
mesh::Mesh box(const std::string& type, std::array<int, 3> cells,
               std::array<double, 3> lengths = {1, 1, 1});

/// A plate in the plane z = 0 from the origin, cut into nx × ny elements of four nodes.
mesh::Mesh plate(const std::string& type, std::array<int, 2> cells, double width, double height);

/// A straight row of elements of two nodes along x.
mesh::Mesh row(const std::string& type, int cells, double length);

}  // namespace tests
