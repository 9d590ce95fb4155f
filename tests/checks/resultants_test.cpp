#include "tools/checks/resultants.h"

#include "tests/checks/support.h"

namespace {

using support::Model;
using support::number;

/// "Step 1: 2 records, F 0 -6 0, M 0 0 -5": all sums, one a line.
std::string sums(const checks::Subject& subject, const std::array<double, 3>& about = {}) {
  std::string text;
  for (const checks::Resultant& sum : checks::resultants_of(subject, about)) {
    text +=
        (text.empty() ? "" : "\n") + sum.of + ": " + std::to_string(sum.records) + " records, F";
    for (const double component : sum.rounded_force()) text += " " + number(component);
    text += ", M";
    for (const double component : sum.rounded_moment()) text += " " + number(component);
    if (sum.left_out > 0) text += ", left out " + std::to_string(sum.left_out);
    if (sum.with_amplitude > 0) text += ", amplitudes " + std::to_string(sum.with_amplitude);
  }
  return text;
}

TEST(Resultants, OfSetsAreWhatTheySayAndOfStepsWhatActs) {
  const Model model(
      "*STEP\n*STATIC\n*CLOAD\n2,3,-5\n8,1,2\n8,6,7\n*END STEP\n"
      "*STEP\n*STATIC\n*CLOAD,AMPLITUDE=A1\n2,3,-1\n*END STEP\n");
  // Node 2 is at (1, 0, 0), and node 8 at (0, 1, 1).
  EXPECT_EQ(
      "Step 1, CLOAD: 3 records, F 2 0 -5, M 0 7 5\n"
      "Step 2, CLOAD, AMPLITUDE=A1: 1 records, F 0 0 -1, M 0 1 0, amplitudes 1\n"
      "Step 1: 3 records, F 2 0 -5, M 0 7 5\n"
      "Step 2: 3 records, F 2 0 -1, M 0 3 5, amplitudes 1",
      sums(model.subject()));
  EXPECT_EQ(
      "Step 1, CLOAD: 3 records, F 2 0 -5, M 5 0 7\n"
      "Step 2, CLOAD, AMPLITUDE=A1: 1 records, F 0 0 -1, M 1 0 0, amplitudes 1\n"
      "Step 1: 3 records, F 2 0 -5, M 5 0 7\n"
      "Step 2: 3 records, F 2 0 -1, M 1 0 7, amplitudes 1",
      sums(model.subject(), {1, 1, 1}))
      << "moments are about the point";
}

TEST(Resultants, TurnLocalForcesAndTellWhatIsNotInTheSum) {
  Model model(
      "*TRANSFORM,NSET=TOP,TYPE=C\n0,0,0,0,0,1\n*STEP\n*STATIC\n*CLOAD\n6,2,3\n*END STEP\n");
  support::append(model.table("NodalForces"), 9, {1, 5, 1, 1, 0, 0}, {1});
  // Around the third axis, the second direction of node 6 at (1, 0, 1) is the global second.
  EXPECT_EQ(
      "Step 1, CLOAD: 1 records, F 0 3 0, M -3 0 3, left out 1\n"
      "Step 1: 1 records, F 0 3 0, M -3 0 3, left out 1",
      sums(model.subject()));
}

}  // namespace
