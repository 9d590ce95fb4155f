#include "tools/geometry/shape.h"

#include <gmock/gmock.h>

#include <map>

#include "tests/geometry/meshes.h"
#include "tools/mesh/node_index.h"

namespace geometry {
namespace {

using ::testing::DoubleNear;
using ::testing::SizeIs;

TEST(NodeIndex, FindsNumbersHoweverFarApart) {
  const mesh::NodeIndex index(std::vector<std::int32_t>{7, 2000000000, 9});
  EXPECT_EQ(index.of(2000000000), 1U);
  EXPECT_EQ(index.of(9), 2U);
  EXPECT_EQ(index.of(8), mesh::NodeIndex::none);
}

// The area of a closed surface, and its volume by the divergence theorem: it is that of the body
// only if every face is there once and turns outwards.
struct Measures {
  double area = 0;
  double volume = 0;
};

Measures measure(const Shape& shape) {
  Measures result;
  for (const Face& face : shape.faces) {
    const Point& origin = shape.points[face.nodes[0]];
    for (std::size_t i = 1; i + 1 < face.size; ++i) {
      const Point a = shape.points[face.nodes[i]] - origin;
      const Point b = shape.points[face.nodes[i + 1]] - origin;
      const Point cross(a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(),
                        a.x() * b.y() - a.y() * b.x());
      result.area += cross.norm() / 2;
      result.volume += origin.dot(cross) / 6;
    }
  }
  return result;
}

class SolidTypes : public ::testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(All, SolidTypes,
                         ::testing::Values("C3D4", "C3D10", "C3D10T", "C3D6", "C3D15", "C3D8",
                                           "C3D8R", "C3D8I", "C3D20", "C3D20R", "F3D8", "F3D4"));

TEST_P(SolidTypes, OuterFacesOfABlockAreItsSurface) {
  const Shape shape = shape_of(tests::box(GetParam(), {3, 2, 4}, {3, 2, 4}));
  const Measures measures = measure(shape);
  EXPECT_THAT(measures.area, DoubleNear(2 * (3 * 2 + 3 * 4 + 2 * 4), 1e-9));
  EXPECT_THAT(measures.volume, DoubleNear(3 * 2 * 4, 1e-9));
}

TEST(ShapeOf, ABlockWithNodesListedTheOtherWayRoundStillTurnsItsFacesOutwards) {
  mesh::Mesh mesh = tests::box("C3D8", {1, 1, 1});
  auto& nodes = mesh.blocks[0].nodes;
  std::rotate(nodes.begin(), nodes.begin() + 4, nodes.end());
  EXPECT_THAT(measure(shape_of(mesh)).volume, DoubleNear(1, 1e-12));
}

TEST(ShapeOf, AHexahedronThatNamesNodesTwiceIsAClosedWedge) {
  mesh::Mesh mesh = tests::box("C3D8", {1, 1, 1});
  auto& nodes = mesh.blocks[0].nodes;
  nodes[3] = nodes[2];
  nodes[7] = nodes[6];
  const Measures measures = measure(shape_of(mesh));
  EXPECT_THAT(measures.volume, DoubleNear(0.5, 1e-12));
  EXPECT_THAT(measures.area, DoubleNear(3 + std::sqrt(2), 1e-12));
}

TEST(ShapeOf, TypesAreDrawnAsWhatTheyAre) {
  struct Expected {
    std::size_t faces, lines, singles;
  };
  const std::map<std::string, std::pair<std::size_t, Expected>> types = {
      {"S3", {3, {1, 0, 0}}},      {"S8R", {8, {1, 0, 0}}},     {"M3D4R", {4, {1, 0, 0}}},
      {"CPS6", {6, {1, 0, 0}}},    {"CPE4", {4, {1, 0, 0}}},    {"CAX8R", {8, {1, 0, 0}}},
      {"B31", {2, {0, 1, 0}}},     {"B32R", {3, {0, 1, 0}}},    {"T3D2", {2, {0, 1, 0}}},
      {"SPRINGA", {2, {0, 1, 0}}}, {"SPRING1", {1, {0, 0, 1}}}, {"DASHPOTA", {2, {0, 1, 0}}},
      {"GAPUNI", {2, {0, 1, 0}}},  {"MASS", {1, {0, 0, 1}}},    {"DCOUP3D", {1, {0, 0, 1}}},
      {"U1", {2, {0, 1, 0}}},      {"U4", {7, {0, 0, 7}}},
  };
  for (const auto& [type, expected] : types) {
    mesh::Mesh mesh;
    mesh::Block block{type, expected.first, {1}, {}};
    for (int id = 1; id <= static_cast<int>(expected.first); ++id) {
      mesh.node_ids.push_back(id);
      mesh.coordinates.push_back({1.0 * id, 1.0 * id * id, 0});
      block.nodes.push_back(id);
    }
    mesh.blocks.push_back(block);
    const Shape shape = shape_of(mesh);
    EXPECT_THAT(shape.faces, SizeIs(expected.second.faces)) << type;
    EXPECT_THAT(shape.lines, SizeIs(expected.second.lines)) << type;
    EXPECT_THAT(shape.singles, SizeIs(expected.second.singles)) << type;
  }
}

TEST(ShapeOf, AnElementThatNamesAnUnknownNodeIsCountedAndLeftOut) {
  mesh::Mesh mesh = tests::row("T3D2", 3, 3);
  mesh.blocks[0].nodes[1] = 99;
  const Shape shape = shape_of(mesh);
  EXPECT_THAT(shape.lines, SizeIs(2));
  EXPECT_EQ(shape.elements_without_node, 1);
  EXPECT_EQ(shape.elements, 3);
}

}  // namespace
}  // namespace geometry
