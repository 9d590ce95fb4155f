#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace geometry {

/// What an element looks like.
enum class Family : std::uint8_t {
  solid,         ///< a volume
  surface,       ///< a shell or membrane
  plane,         ///< a section of a body in the plane of x and y
  axisymmetric,  ///< the section of a body of revolution about the y axis
  line,          ///< a beam, truss or pipe
  connector,     ///< a spring, dashpot or gap between two nodes
  point,         ///< a mass, or a spring to the ground
};

/// One face of an element: places in the element's list of nodes, in order around the face. With
/// nodes at the middles of its edges, corners and middles take turns.
struct ElementFace {
  std::array<std::uint8_t, 8> nodes{};
  std::uint8_t size = 0;
  bool has_middles = false;
};

/// An element type as far as a picture needs it.
struct ElementType {
  Family family = Family::point;
  std::span<const ElementFace> faces;  ///< of a solid or surface
};

/// Finds out by name and number of nodes what a type is. What is no type that it knows is a line
/// with two or three nodes, and otherwise points.
ElementType describe(std::string_view type, std::size_t nodes);

}  // namespace geometry
