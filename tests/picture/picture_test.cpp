#include "tools/picture/picture.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/geometry/meshes.h"
#include "tests/picture/drawn.h"
#include "tests/picture/models.h"
#include "tools/picture/svg.h"

namespace picture {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::Not;
using ::testing::Pair;
using ::testing::SizeIs;

std::size_t records_in(const content::Content& content) {
  std::size_t count = 0;
  for (const content::Table& table : content.tables) count += table.size();
  return count;
}

content::Content of(content::Table table) {
  content::Content content;
  content.tables.push_back(std::move(table));
  return content;
}

// On the nodes 1 and 3, far from each other.
content::Content content_with_nodes(content::Content content) {
  content.vertices = {{1, 3}, {{0, 0, 0}, {9, 5, 0}}};
  return content;
}

TEST(Draw, EveryRecordOfEveryKindHasItsGlyph) {
  const content::Content content = tests::all_kinds();
  ASSERT_THAT(content.tables, SizeIs(18));
  const Picture picture = draw(tests::box("C3D8", {1, 1, 1}), content);
  const auto drawn = tests::read_picture(picture.svg);
  EXPECT_THAT(drawn.records, SizeIs(records_in(content)));
  EXPECT_THAT(drawn.records, Each(Pair(::testing::_, 1)));
}

TEST(Draw, NothingLiesOutsideTheFrame) {
  const content::Content content = tests::all_kinds();
  const mesh::Mesh mesh = tests::box("C3D20", {2, 1, 3}, {1, 0.1, 40});
  for (const std::array<double, 3> from :
       {std::array<double, 3>{1, -1, 1}, {0, 0, 1}, {-1, 0, 0}, {0.3, 5, -2}}) {
    for (const double scale : {0.2, 1.0, 6.0}) {
      Options options;
      options.from = from;
      options.scale = scale;
      options.width = 500;
      options.height = 400;
      options.has_legend = false;
      const auto drawn = tests::read_picture(draw(mesh, content, options).svg);
      EXPECT_THAT(drawn.left, Ge(0)) << scale;
      EXPECT_THAT(drawn.top, Ge(0)) << scale;
      EXPECT_THAT(drawn.right, Le(500)) << scale;
      EXPECT_THAT(drawn.bottom, Le(400)) << scale;
    }
  }
}

// The pictures in the folder goldens were looked at. A new one is written beside the test's program
// when it differs.
TEST(Draw, SmallModelsAreDrawnAsInTheirGoldens) {
  content::Table forces = tests::table("NodalForces");
  tests::add(forces, 2, {10, 0, 1, 0});
  tests::add(forces, 4, {10, 0, 1, 0});
  content::Table supports = tests::table("NodalBoundaryConditions");
  tests::add(supports, 1, {1, 1, 1});
  content::Content plate = of(forces);
  plate.tables.push_back(supports);
  Options options;
  options.title = "A plate & its <loads>";
  options.labels = Labels::values;
  const std::filesystem::path goldens = u8"" GOLDENS;
  const std::map<std::string, std::string> pictures = {
      {"plate.svg", draw(tests::plate("CPS4", {2, 1}, 2, 1), plate, options).svg},
      {"kinds.svg", draw(tests::box("C3D8", {1, 1, 1}), tests::all_kinds()).svg}};
  for (const auto& [name, svg] : pictures) {
    std::stringstream golden;
    golden << std::ifstream(goldens / name, std::ios::binary).rdbuf();
    if (golden.str() == svg) continue;
    std::ofstream(name, std::ios::binary) << svg;
    ADD_FAILURE() << name << " is another than tests/picture/goldens/" << name;
  }
}

TEST(Draw, EqualLoadsAreDrawnEqualAndOthersNot) {
  content::Table forces = tests::table("NodalForces");
  for (const content::Key node : {1, 2, 3}) tests::add(forces, node, {10, 0, 0, -2});
  for (const content::Key node : {4, 5}) tests::add(forces, node, {4, 0, 0, -1});
  const auto drawn =
      tests::read_picture(draw(tests::box("C3D8", {1, 1, 1}), of(forces)).svg).definition_of;
  EXPECT_EQ(drawn.at("NodalForce 1"), drawn.at("NodalForce 3"));
  EXPECT_EQ(drawn.at("NodalForce 4"), drawn.at("NodalForce 5"));
  EXPECT_NE(drawn.at("NodalForce 1"), drawn.at("NodalForce 4"));
}

TEST(Draw, ACrowdIsThinnedAndCounted) {
  const mesh::Mesh mesh = tests::box("C3D8", {70, 70, 1});
  content::Table supports = tests::table("NodalBoundaryConditions");
  for (const std::int32_t node : mesh.node_ids) tests::add(supports, node, {0, 0, 1});
  const Picture picture = draw(mesh, of(supports));
  const auto drawn = tests::read_picture(picture.svg);
  ASSERT_THAT(picture.legend, SizeIs(1));
  EXPECT_EQ(picture.legend[0].records, supports.size());
  EXPECT_EQ(picture.legend[0].drawn, drawn.records.size());
  EXPECT_THAT(drawn.records, SizeIs(AllOf(Ge(100), Le(1000))));
  EXPECT_THAT(picture.svg, HasSubstr("10,082 ("));
  EXPECT_THAT(picture.notes, Contains(HasSubstr("a dot stands for each of the others")));
  EXPECT_LT(picture.svg.size(), 300'000U);
}

TEST(Draw, ForcesAddUpToTheResultantInTheirCoordinateSystems) {
  content::Table forces = tests::table("NodalForces");
  tests::add(forces, 7, {10, 0, 0, -3, 1, 0});
  tests::add(forces, 7, {2, 1, 0, 0, 1, 5});
  tests::add(forces, 7, {2, 1, 0, 0, 1, 6});
  Options options;
  options.axes = [](content::Key system,
                    content::Key) -> std::optional<std::array<content::Vector, 3>> {
    if (system != 5) return {};
    return std::array<content::Vector, 3>{{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};
  };
  mesh::Mesh mesh = tests::box("C3D8", {1, 1, 1});
  mesh.coordinates[6] = {3, 0, 1};
  const Picture picture = draw(mesh, of(forces), options);
  EXPECT_THAT(picture.resultant.force, ::testing::ElementsAre(0, 2, -10));
  EXPECT_THAT(picture.resultant.moment, ::testing::ElementsAre(-2, 30, 6));
  EXPECT_EQ(picture.resultant.records, 2U);
  EXPECT_THAT(picture.notes, Contains(HasSubstr("1 record is not drawn")));
}

TEST(Draw, SupportsAndDisplacementsAreAlongTheAxesOfTheirNodes) {
  // Seen along z, where the turned axes are y, -x and z. What is held along the first axis of node
  // 1 is what is held along the second of node 3.
  content::Table supports = tests::table("NodalBoundaryConditions");
  tests::add(supports, 1, {1, 0, 0});
  tests::add(supports, 3, {0, 1, 0});
  content::Table moved = tests::table("NodalPrescribedDisplacements");
  tests::add(moved, 1, {0, 1, 0, 0, 0, -2});
  tests::add(moved, 3, {0, 0, 0, 0, 0, 2});
  content::Content content = of(supports);
  content.tables.push_back(moved);
  Options options;
  options.from = {0, 0, 1};
  options.node_axes = [](content::Key node) -> std::optional<std::array<content::Vector, 3>> {
    if (node != 1) return {};
    return std::array<content::Vector, 3>{{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};
  };
  const Picture picture = draw({}, content_with_nodes(content), options);
  const auto drawn = tests::read_picture(picture.svg).definition_of;
  EXPECT_EQ(drawn.at("NodalBoundaryCondition 1"), drawn.at("NodalBoundaryCondition 2"));
  EXPECT_EQ(drawn.at("NodalPrescribedDisplacement 1"), drawn.at("NodalPrescribedDisplacement 2"));
  EXPECT_THAT(picture.legend, Contains(::testing::Field(&LegendEntry::name, "Support x (local)")));
}

TEST(Draw, FiltersBySetAndKind) {
  content::Content content = of(tests::table("NodalForces"));
  content.tables.push_back(tests::table("NodalMoments"));
  content.set_tables.push_back({"LoadSets", {{1, "Wind"}, {2, "Snow"}}});
  tests::add(content.tables[0], 1, {1, 1, 0, 0}, {1});
  tests::add(content.tables[0], 2, {1, 1, 0, 0}, {1, 2});
  tests::add(content.tables[1], 3, {1, 1, 0, 0}, {2});
  const mesh::Mesh mesh = tests::box("C3D8", {1, 1, 1});
  const auto drawn = [&](const Options& options) {
    return tests::read_picture(draw(mesh, content, options).svg).records;
  };
  Options by_set;
  by_set.sets = {"Snow"};
  EXPECT_THAT(drawn(by_set), SizeIs(2));
  Options by_kind = by_set;
  by_kind.kinds = {"NodalMoments"};
  EXPECT_THAT(drawn(by_kind), SizeIs(1));
}

TEST(Draw, TakesNodesFromTheTablesAndCountsRecordsWithoutCoordinates) {
  content::Table forces = tests::table("NodalForces");
  tests::add(forces, 1, {1, 0, 0, 1});
  tests::add(forces, 2, {1, 0, 0, 1});
  tests::add(forces, 99, {1, 0, 0, 1});
  content::Content content = of(forces);
  content.vertices = {{1, 2}, {{0, 0, 0}, {NAN, 0, 0}}};
  const Picture picture = draw({}, content);
  EXPECT_THAT(tests::read_picture(picture.svg).records, SizeIs(1));
  EXPECT_THAT(picture.notes, Contains(HasSubstr("2 records are not drawn")));

  content.tables.clear();
  EXPECT_THAT(draw({}, content).notes, Contains(HasSubstr("no loads, supports")));
}

TEST(Draw, WhatStandsBehindThePartIsFaint) {
  const mesh::Mesh mesh = tests::box("C3D8", {1, 1, 1});
  content::Table masses = tests::table("NodalLumpedMasses");
  for (const std::int32_t node : mesh.node_ids) tests::add(masses, node, {1, 1, 1});
  const Picture picture = draw(mesh, of(masses));
  std::size_t faint = 0;
  for (std::size_t at = picture.svg.find("opacity=\".3\""); at != std::string::npos;
       at = picture.svg.find("opacity=\".3\"", at + 1)) {
    ++faint;
  }
  EXPECT_EQ(faint, 1U);  // of the corners of a box one is hidden, seen isometrically
}

TEST(Draw, NumbersOfAnySizeAreShort) {
  EXPECT_EQ(svg::readable(-2.5e-300), "-2.5e-300");
  EXPECT_EQ(svg::readable(12345678), "1.235e+07");
  EXPECT_EQ(svg::readable(0.00125), "0.00125");
}

TEST(Draw, TextsOfUsersCannotBreakThePicture) {
  content::Table forces = tests::table("NodalForces");
  tests::add(forces, 1, {1, 0, 0, 1});
  forces.descriptions = {"<b>\"tip\" & \x01\xFF load"};
  Options options;
  options.labels = Labels::names;
  const std::string svg = draw(tests::box("C3D8", {1, 1, 1}), of(forces), options).svg;
  EXPECT_THAT(svg, HasSubstr("&lt;b&gt;&quot;tip&quot; &amp; \uFFFD\uFFFD load"));
}

}  // namespace
}  // namespace picture
