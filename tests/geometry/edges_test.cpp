#include "tools/geometry/edges.h"

#include <gmock/gmock.h>

#include <numeric>

#include "tests/geometry/meshes.h"
#include "tools/geometry/depth_buffer.h"
#include "tools/geometry/simplify.h"
#include "tools/geometry/view.h"

namespace geometry {
namespace {

using ::testing::DoubleNear;
using ::testing::Eq;
using ::testing::Optional;
using ::testing::SizeIs;

double length_of(const Shape& shape, const std::vector<Segment>& segments) {
  double length = 0;
  for (const auto& [a, b] : segments) length += (shape.points[a] - shape.points[b]).norm();
  return length;
}

std::vector<Point> projected(const Shape& shape, const View& view) {
  std::vector<Point> screen;
  for (const Point& point : shape.points) screen.push_back(view.project(point) * 50);
  return screen;
}

TEST(FeatureEdges, OfABlockAreItsTwelveEdgesForAllElementTypes) {
  for (const char* type : {"C3D4", "C3D6", "C3D8", "C3D10", "C3D15", "C3D20"}) {
    const Shape shape = shape_of(tests::box(type, {3, 2, 4}, {3, 2, 4}));
    EXPECT_THAT(length_of(shape, feature_edges(shape, isometric())), DoubleNear(36, 1e-9)) << type;
  }
}

TEST(FeatureEdges, OfAShellAreItsBordersWhicheverWayItsElementsTurn) {
  mesh::Mesh mesh = tests::plate("S4", {4, 3}, 4, 3);
  std::reverse(mesh.blocks[0].nodes.begin(), mesh.blocks[0].nodes.begin() + 4);
  const Shape shape = shape_of(mesh);
  EXPECT_THAT(length_of(shape, feature_edges(shape, isometric())), DoubleNear(14, 1e-9));
}

TEST(Outlines, OfAPlateAreOneLineAroundIt) {
  const Shape shape = shape_of(tests::plate("S4", {4, 3}, 4, 3));
  std::vector<std::uint32_t> faces(shape.faces.size());
  std::iota(faces.begin(), faces.end(), 0);
  const auto screen = projected(shape, View(Point::UnitZ()));
  const auto lines = outlines(shape, faces, screen);
  ASSERT_THAT(lines, SizeIs(1));
  ScreenLine line;
  for (const Place place : lines[0]) line.emplace_back(screen[place].head<2>());
  EXPECT_EQ(line.front(), line.back());
  EXPECT_LE(simplified(line, 0.1).size(), 6U);  // four corners, and where it begins
  // Without the one in the middle there is a hole.
  faces.erase(faces.begin() + 4);
  EXPECT_THAT(outlines(shape, faces, screen), SizeIs(2));
}

TEST(Joined, LinesOfAGridGoStraightOn) {
  const Shape shape = shape_of(tests::plate("S4", {4, 3}, 4, 3));
  std::vector<std::uint32_t> faces(shape.faces.size());
  std::iota(faces.begin(), faces.end(), 0);
  const auto edges = edges_of(shape, faces);
  EXPECT_THAT(edges, SizeIs(4 * 4 + 3 * 5));
  const auto lines = joined(edges, projected(shape, View(Point::UnitZ())));
  std::size_t segments = 0;
  for (const auto& line : lines) segments += line.size() - 1;
  EXPECT_EQ(segments, edges.size());
  EXPECT_LE(lines.size(), 9U);
}

TEST(DepthBuffer, TellsWhatIsHiddenWhollyInPartAndNotAtAll) {
  const auto square = [](double left, double size, double depth) {
    return std::vector<Point>{{left, left, depth},
                              {left + size, left, depth},
                              {left + size, left + size, depth},
                              {left, left + size, depth}};
  };
  DepthBuffer buffer(100, 100);
  const auto front = square(20, 40, 10);
  const auto behind = square(25, 10, 5);
  const auto partly = square(50, 30, 5);
  for (const auto& polygon : {front, behind, partly}) buffer.add(polygon);
  EXPECT_EQ(buffer.seen(front), DepthBuffer::Seen::whole);
  EXPECT_EQ(buffer.seen(behind), DepthBuffer::Seen::nothing);
  EXPECT_EQ(buffer.seen(partly), DepthBuffer::Seen::in_part);
  EXPECT_TRUE(buffer.sees({20, 20, 10}));
  EXPECT_FALSE(buffer.sees({40, 40, 5}));
  // Smaller than a sample, on a visible and on a hidden place.
  EXPECT_EQ(buffer.seen(square(40.6, 0.2, 10)), DepthBuffer::Seen::whole);
  EXPECT_EQ(buffer.seen(square(40.6, 0.2, 5)), DepthBuffer::Seen::nothing);
}

TEST(ReadDirection, TakesAxesNumbersAndNothingElse) {
  EXPECT_THAT(read_direction("+x"), Optional(Eq(Point(1, 0, 0))));
  EXPECT_THAT(read_direction("-z"), Optional(Eq(Point(0, 0, -1))));
  EXPECT_THAT(read_direction("0,-2,0"), Optional(Eq(Point(0, -1, 0))));
  EXPECT_TRUE(read_direction("iso"));
  for (const char* text : {"", "x", "+w", "1,2", "1,2,3,4", "0,0,0", "1,2,nan", "1,2,x", "1 2 3"}) {
    EXPECT_FALSE(read_direction(text)) << text;
  }
}

}  // namespace
}  // namespace geometry
