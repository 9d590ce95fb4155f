#pragma once

#include <Eigen/Core>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tools/geometry/elements.h"
#include "tools/mesh/mesh.h"

namespace geometry {

using Point = Eigen::Vector3d;

/// A place in the list of a shape's points.
using Place = std::uint32_t;

/// A polygon that can be seen: an outer face of a solid, or a shell or plane element.
struct Face {
  std::array<Place, 8> nodes{};
  std::uint8_t size = 0;
  bool has_middles = false;  ///< every second node is the middle of an edge
  Family family = Family::solid;

  [[nodiscard]] std::span<const Place> around() const { return {nodes.data(), size}; }
};

/// An element that is drawn as a line through its nodes.
struct Line {
  std::array<Place, 3> nodes{};
  std::uint8_t size = 0;
  Family family = Family::line;

  [[nodiscard]] std::span<const Place> along() const { return {nodes.data(), size}; }
};

/// What can be seen of a mesh.
struct Shape {
  std::vector<Point> points;  ///< of all nodes, in the mesh's order
  std::vector<Face> faces;    ///< those of solids turn their front, seen counterclockwise, outwards
  std::vector<Line> lines;
  std::vector<Place> singles;             ///< masses and other elements at points
  std::size_t elements = 0;               ///< in the mesh
  std::size_t elements_without_node = 0;  ///< that name a node which the mesh does not have
};

/// Finds the outer faces of the solids of a mesh, and everything else that can be seen of it.
Shape shape_of(const mesh::Mesh& mesh);

/// The normal of a face, of length 1, or 0 if the face has no area.
Point normal(const Shape& shape, const Face& face);

}  // namespace geometry
