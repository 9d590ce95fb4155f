#include "tools/geometry/elements.h"

#include <algorithm>
#include <initializer_list>

namespace geometry {
namespace {

// Corners count from 0. Faces of solids are listed as they are seen from outside,
// counterclockwise.
constexpr ElementFace corners(std::initializer_list<std::uint8_t> nodes) {
  ElementFace face;
  for (const std::uint8_t node : nodes) face.nodes.at(face.size++) = node;
  return face;
}

constexpr ElementFace with_middles(std::initializer_list<std::uint8_t> nodes) {
  ElementFace face = corners(nodes);
  face.has_middles = true;
  return face;
}

constexpr std::array tetrahedron = {corners({0, 2, 1}), corners({0, 1, 3}), corners({1, 2, 3}),
                                    corners({2, 0, 3})};
constexpr std::array tetrahedron10 = {
    with_middles({0, 6, 2, 5, 1, 4}), with_middles({0, 4, 1, 8, 3, 7}),
    with_middles({1, 5, 2, 9, 3, 8}), with_middles({2, 6, 0, 7, 3, 9})};
constexpr std::array pyramid = {corners({0, 3, 2, 1}), corners({0, 1, 4}), corners({1, 2, 4}),
                                corners({2, 3, 4}), corners({3, 0, 4})};
constexpr std::array wedge = {corners({0, 2, 1}), corners({3, 4, 5}), corners({0, 1, 4, 3}),
                              corners({1, 2, 5, 4}), corners({2, 0, 3, 5})};
constexpr std::array wedge15 = {
    with_middles({0, 8, 2, 7, 1, 6}), with_middles({3, 9, 4, 10, 5, 11}),
    with_middles({0, 6, 1, 13, 4, 9, 3, 12}), with_middles({1, 7, 2, 14, 5, 10, 4, 13}),
    with_middles({2, 8, 0, 12, 3, 11, 5, 14})};
constexpr std::array hexahedron = {corners({0, 3, 2, 1}), corners({4, 5, 6, 7}),
                                   corners({0, 1, 5, 4}), corners({1, 2, 6, 5}),
                                   corners({2, 3, 7, 6}), corners({3, 0, 4, 7})};
constexpr std::array hexahedron20 = {
    with_middles({0, 11, 3, 10, 2, 9, 1, 8}),   with_middles({4, 12, 5, 13, 6, 14, 7, 15}),
    with_middles({0, 8, 1, 17, 5, 12, 4, 16}),  with_middles({1, 9, 2, 18, 6, 13, 5, 17}),
    with_middles({2, 10, 3, 19, 7, 14, 6, 18}), with_middles({3, 11, 0, 16, 4, 15, 7, 19})};
constexpr std::array triangle = {corners({0, 1, 2})};
constexpr std::array triangle6 = {with_middles({0, 3, 1, 4, 2, 5})};
constexpr std::array quadrangle = {corners({0, 1, 2, 3})};
constexpr std::array quadrangle8 = {with_middles({0, 4, 1, 5, 2, 6, 3, 7})};

std::span<const ElementFace> faces_of_solid(std::size_t nodes) {
  switch (nodes) {
    case 4:
      return tetrahedron;
    case 5:
      return pyramid;
    case 6:
      return wedge;
    case 8:
      return hexahedron;
    case 10:
      return tetrahedron10;
    case 15:
      return wedge15;
    case 20:
      return hexahedron20;
    default:
      return {};
  }
}

std::span<const ElementFace> faces_of_surface(std::size_t nodes) {
  switch (nodes) {
    case 3:
      return triangle;
    case 4:
      return quadrangle;
    case 6:
      return triangle6;
    case 8:
      return quadrangle8;
    default:
      return {};
  }
}

struct Beginning {
  std::string_view text;
  Family family;
};

// The first that fits counts.
constexpr std::array beginnings = {
    Beginning{"SPRING", Family::connector}, Beginning{"DASHPOT", Family::connector},
    Beginning{"GAP", Family::connector},    Beginning{"CONN", Family::connector},
    Beginning{"MASS", Family::point},       Beginning{"ROTARY", Family::point},
    Beginning{"DCOUP", Family::point},      Beginning{"SAX", Family::line},
    Beginning{"CAX", Family::axisymmetric}, Beginning{"DCAX", Family::axisymmetric},
    Beginning{"CPS", Family::plane},        Beginning{"CPE", Family::plane},
    Beginning{"CPEG", Family::plane},       Beginning{"DC2D", Family::plane},
    Beginning{"M3D", Family::surface},      Beginning{"R3D3", Family::surface},
    Beginning{"R3D4", Family::surface},     Beginning{"SFM3D", Family::surface},
    Beginning{"STRI", Family::surface},     Beginning{"S3", Family::surface},
    Beginning{"S4", Family::surface},       Beginning{"S6", Family::surface},
    Beginning{"S8", Family::surface},       Beginning{"DS", Family::surface},
    Beginning{"C3D", Family::solid},        Beginning{"F3D", Family::solid},
    Beginning{"DC3D", Family::solid},       Beginning{"AC3D", Family::solid},
};

}  // namespace

ElementType describe(std::string_view type, std::size_t nodes) {
  const auto* const known = std::ranges::find_if(
      beginnings, [&](const Beginning& b) { return type.starts_with(b.text); });
  const Family family = known != beginnings.end() ? known->family : Family::line;
  const bool is_solid = family == Family::solid;
  const bool has_faces = is_solid || family == Family::surface || family == Family::plane ||
                         family == Family::axisymmetric;
  if (has_faces) {
    const auto faces = is_solid ? faces_of_solid(nodes) : faces_of_surface(nodes);
    if (!faces.empty()) return {family, faces};
  }
  const bool is_line = nodes == 2 || nodes == 3;
  if (!is_line || family == Family::point) return {Family::point, {}};
  return {family == Family::connector ? Family::connector : Family::line, {}};
}

}  // namespace geometry
