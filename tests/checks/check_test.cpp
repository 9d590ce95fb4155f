#include "tools/checks/check.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "tests/checks/support.h"
#include "tools/checks/codes.h"

namespace {

using support::Model;

/// "no-direction: NodalForce 2 on node 6": all findings, one a line.
std::string findings(const checks::Subject& subject) {
  std::string text;
  for (const checks::Finding& finding : checks::check(subject)) {
    text.append(text.empty() ? "" : "\n").append(finding.code).append(": ").append(finding.where);
  }
  return text;
}

// A deck without a fault: held, and loaded elsewhere.
const std::string kSound = "*BOUNDARY\n1,1,6\n*STEP\n*STATIC\n*CLOAD\n5,2,-5\n*END STEP\n";

void add_force(Model& model, content::Key vertex, std::vector<double> values,
               std::vector<content::Key> sets = {1}) {
  support::append(model.table("NodalForces"), vertex, std::move(values), std::move(sets));
}

TEST(Check, FindsNothingInASoundModel) { EXPECT_EQ("", findings(Model(kSound).subject())); }

TEST(Check, FindsEachFaultAloneInTheDeckThatHasIt) {
  const std::string two = kSound + "*STEP\n*STATIC\n";
  const struct {
    std::string deck;
    const char* findings;
  } cases[] = {
      {kSound + "*STEP\n*STATIC\n*CLOAD\n5,2,-5\n*END STEP\n", ""},
      {"*BOUNDARY\n1,1,6\n*STEP\n*STATIC\n*CLOAD\n5,2,-5\n1,2,-5\n*END STEP\n",
       "load-on-support: NodalForce 2 on node 1, in the set 'Step 1, CLOAD'"},
      {two + "*BOUNDARY\n5,1,2\n*END STEP\n",
       "load-on-support: NodalForce 1 on node 5, in the set 'Step 1, CLOAD'"},
      {"*BOUNDARY\n1,1,6\n*STEP\n*STATIC\n*CLOAD\n5,2,-5\nTOP,2,-5\n*END STEP\n",
       "load-twice: NodalForce 2 on node 5, in the set 'Step 1, CLOAD'"},
      {"*BOUNDARY\n1,1,6\n*STEP\n*STATIC\n*CLOAD\n5,2,-5\n*CLOAD,AMPLITUDE=A1\n5,2,-5\n*END STEP\n",
       "two-amplitudes: NodalForce 2 on node 5, in the set 'Step 1, CLOAD, AMPLITUDE=A1'"},
      {"*BOUNDARY\n1,1,6\n1,2,4\n*STEP\n*STATIC\n*END STEP\n",
       "support-twice: NodalBoundaryCondition 2 on node 1, in the set 'Model, BOUNDARY'"},
      {"*BOUNDARY\n1,1,6\n2,1,1,.5\n2,1,1,.6\n*STEP\n*STATIC\n*END STEP\n",
       "moved-twice: NodalPrescribedDisplacement 2 on node 2, in the set 'Model, BOUNDARY'"},
      {"*BOUNDARY\n1,1,6\n*BOUNDARY,AMPLITUDE=A1\n1,1,1,.5\n*STEP\n*STATIC\n*END STEP\n",
       "held-and-moved: NodalPrescribedDisplacement 1 on node 1, in the set 'Model, BOUNDARY, "
       "AMPLITUDE=A1'"},
      {"*STEP\n*STATIC\n*CLOAD\n5,2,-5\n*END STEP\n", "no-support: step 1"},
      {"*STEP\n*STATIC\n*END STEP\n", ""},
      {two + "*BOUNDARY,OP=NEW\n*END STEP\n",
       "no-support: step 2\nempty-set: ConstraintSet 2 'Step 2, BOUNDARY, OP=NEW'"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.deck);
    EXPECT_EQ(each.findings, findings(Model(each.deck).subject()));
  }
}

TEST(Check, FindsRecordsThatScriptsLeftUnfinished) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    content::Key vertex;
    std::vector<double> values;  // MultiplierTableID, Magnitude, Vx, Vy, Vz, CoordinateSystemID
    std::vector<content::Key> sets;
    const char* code;
  } cases[] = {
      {6, {1, 5, 0, 0, 0, 0}, {1}, "no-direction"},
      {0, {1, 5, 1, 0, 0, 0}, {1}, "no-vertex"},
      {9, {1, 5, 1, 0, 0, 0}, {1}, "no-coordinates"},
      {6, {1, nan, 1, 0, 0, 0}, {1}, "not-finite"},
      {6, {1, -1.2345678901234567e-8, 1, 0, 0, 0}, {1}, "too-long"},
      {6, {1, -1e-7, 1, 1, 1, 0}, {1}, "too-long"},
      {6, {7, 5, 1, 0, 0, 0}, {1}, "dead-amplitude-link"},
      {6, {1, 5, 1, 0, 0, 4}, {1}, "dead-system-link"},
      {6, {1, 5, 1, 0, 0, 0}, {8}, "dead-set-link"},
      {6, {1, 5, 1, 0, 0, 0}, {}, "no-set"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.code);
    Model model(kSound);
    add_force(model, each.vertex, each.values, each.sets);
    const std::string found = findings(model.subject());
    EXPECT_EQ(0U, found.find(std::string(each.code) + ": NodalForce 2")) << found;
    EXPECT_EQ(std::string::npos, found.find('\n')) << found;
  }
}

TEST(Check, FindsSetsThatNeverActAndRecordsThatActTwice) {
  Model model("*BOUNDARY\n1,1,6\n*STEP\n*STATIC\n*END STEP\n*STEP\n*STATIC\n*END STEP\n");
  auto& imported = model.imported();
  const auto set = [&](const char* name) {
    return support::append_set(imported, "LoadSets", name);
  };
  const std::vector<double> force{1, 5, 1, 0, 0, 0};
  add_force(model, 5, force, {set("Wind")});
  add_force(model, 5, force, {set("Step 3, later")});
  add_force(model, 5, force, {set("Model")});
  add_force(model, 5, force, {set("Initial")});
  add_force(model, 5, force, {set("Step 2, left"), set("Step 2, right")});
  set("Forgotten");
  EXPECT_EQ(
      "no-such-step: NodalForce 2 on node 5, in the set 'Step 3, later'\n"
      "not-before-steps: NodalForce 3 on node 5, in the set 'Model'\n"
      "not-initial: NodalForce 4 on node 5, in the set 'Initial'\n"
      "no-step: NodalForce 1 on node 5, in the set 'Wind'\n"
      "in-two-sets: NodalForce 5 on node 5, in the set 'Step 2, right'\n"
      "empty-set: LoadSet 7 'Forgotten'",
      findings(model.subject()));
}

TEST(Check, FindsSupportsThatHoldNothing) {
  Model model(kSound);
  support::append(model.table("NodalBoundaryConditions"), 2, {0, 0, 0, 0, 0, 0}, {1});
  content::Table& springs = model.add_table("NodalElasticBoundaries", "ConstraintSets",
                                            {"Vx", "Vy", "Vz", "Stiffness", "IsRotation"});
  support::append(springs, 2, {1, 0, 0, 0, 0}, {1});
  support::append(springs, 3, {0, 0, 0, 1e10, 0}, {1});
  content::Table& moved = model.table("NodalPrescribedDisplacements");
  const content::Key set = support::append_set(model.imported(), "LoadSets", "Step 1, moved");
  support::append(moved, 4, {0, 4, 1, 0, .5, 0, 0, 0}, {set});
  support::append(moved, 4, {0, 3, 1, 0, .5, 0, 0, 0}, {set});
  EXPECT_EQ(
      "no-direction: NodalElasticBoundary 2 on node 3\n"
      "no-direction: NodalPrescribedDisplacement 2 on node 4\n"
      "no-such-direction: NodalPrescribedDisplacement 1 on node 4\n"
      "no-stiffness: NodalElasticBoundary 1 on node 2\n"
      "holds-nothing: NodalBoundaryCondition 2 on node 2",
      findings(model.subject()));
}

TEST(Check, OneFindingStandsForAllRecordsWithTheSameFault) {
  Model model(kSound);
  for (int i = 0; i < 5; ++i) add_force(model, 2 + i, {1, 5, 0, 0, 0, 0});
  const auto found = checks::check(model.subject());
  ASSERT_EQ(1U, found.size());
  EXPECT_EQ("5 NodalForces have no direction: their vectors are 0.", found[0].what);
  EXPECT_EQ("NodalForce 2 on node 2, NodalForce 3 on node 3, NodalForce 4 on node 4 and 2 more",
            found[0].where);
  EXPECT_EQ((std::vector<content::Key>{2, 3, 4, 5, 6}), found[0].records);
  EXPECT_EQ((std::vector<content::Key>{2, 3, 4, 5, 6}), found[0].nodes);
}

TEST(Check, EveryCodeStandsInTheDocumentsWithItsSeverity) {
  std::ifstream file(std::filesystem::path(u8"" ORV_DOCS "/checks.md"));
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  const char* const severities[] = {"note", "warning", "error"};
  for (const checks::CodeWords& words : checks::all_codes()) {
    const std::string row =
        "| `" + std::string(words.name) + "` | " + severities[static_cast<int>(words.severity)];
    EXPECT_NE(std::string::npos, text.find(row)) << row;
  }
}

}  // namespace
