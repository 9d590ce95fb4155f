#include "tools/checks/acting.h"

#include "tests/checks/support.h"

namespace {

using checks::Effect;

/// "force 5.2=-5 S1; held 1.1 S0": what acts in a step, on which freedom of which node, and in
/// which step it was said.
std::string acting_in(const checks::Subject& subject, int step) {
  const checks::Schedule schedule = checks::schedule_of(subject);
  checks::Acting acting(subject, schedule);
  acting.enter(step);
  std::string text;
  acting.each([&](const checks::Action& action) {
    const checks::Statement& what = action.what;
    const char* const names[] = {"force", "heat", "held", "moved", "temperature", "other"};
    text += text.empty() ? "" : "; ";
    text.append(names[static_cast<int>(what.effect)]) += " " + std::to_string(what.node);
    if (what.freedom != 0) text += "." + std::to_string(what.freedom);
    if (what.value != 0) text += "=" + support::number(what.value);
    if (what.multiplier != 0) text += " A" + std::to_string(what.multiplier);
    text += " S" + std::to_string(action.step);
    if (action.from.size() > 1) text += " x" + std::to_string(action.from.size());
  });
  return text;
}

std::string acting_in(const std::string& cards, int step) {
  return acting_in(support::Model(cards).subject(), step);
}

TEST(Acting, LoadsAddUpWithinAStepAndReplaceThoseOfEarlierOnes) {
  const std::string deck =
      "*STEP\n*STATIC\n*CLOAD\n5,2,-5\n5,2,-1\n6,1,3\n*CFLUX\n1,11,2\n1,11,2\n*END STEP\n"
      "*STEP\n*STATIC\n*CLOAD\n5,2,7\n*CFLUX\n1,11,9\n*END STEP\n"
      "*STEP\n*STATIC\n*CLOAD\n5,2,0\n*END STEP\n";
  EXPECT_EQ("force 5.2=-6 S1 x2; force 6.1=3 S1; heat 1.11=4 S1 x2", acting_in(deck, 1));
  EXPECT_EQ("force 5.2=7 S2; force 6.1=3 S1; heat 1.11=9 S2", acting_in(deck, 2));
  EXPECT_EQ("force 5.2 S3; force 6.1=3 S1; heat 1.11=9 S2", acting_in(deck, 3));
}

TEST(Acting, NewEndsWhatWasSaidWithItsKeywordIfItIsTheFirstCard) {
  const std::string first =
      "*BOUNDARY\n1,1,2\n*STEP\n*STATIC\n*BOUNDARY\n2,3,3,.5\n*CLOAD\n5,2,-5\n*CFLUX\n1,11,2\n"
      "*TEMPERATURE\n7,300\n*END STEP\n*STEP\n*STATIC\n";
  const struct {
    const char* cards;
    const char* acting;
  } cases[] = {
      {"",
       "force 5.2=-5 S1; heat 1.11=2 S1; held 1.1 S0; held 1.2 S0; moved 2.3=0.5 S1; "
       "temperature 7=300 S1"},
      {"*CLOAD,OP=NEW\n", "held 1.1 S0; held 1.2 S0; moved 2.3=0.5 S1; temperature 7=300 S1"},
      {"*CFLUX,OP=NEW\n1,11,3\n",
       "force 5.2=-5 S1; heat 1.11=3 S2; held 1.1 S0; held 1.2 S0; moved 2.3=0.5 S1; "
       "temperature 7=300 S1"},
      {"*BOUNDARY,OP=NEW\n3,1\n",
       "force 5.2=-5 S1; heat 1.11=2 S1; held 3.1 S2; temperature 7=300 S1"},
      {"*CLOAD\n6,1,1\n*CLOAD,OP=NEW\n7,1,1\n",
       "force 5.2=-5 S1; force 6.1=1 S2; force 7.1=1 S2; heat 1.11=2 S1; held 1.1 S0; "
       "held 1.2 S0; moved 2.3=0.5 S1; temperature 7=300 S1"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.cards);
    EXPECT_EQ(each.acting, acting_in(first + each.cards + "*END STEP\n", 2));
  }
}

TEST(Acting, OfSupportsTheLastCountsAndAmplitudesGoWithTheirLoads) {
  const std::string deck =
      "*BOUNDARY\n1,1,1\n*STEP\n*STATIC\n*BOUNDARY,AMPLITUDE=A2\n1,1,1,.5\n*CLOAD,AMPLITUDE=A1\n"
      "5,2,-5\n*END STEP\n*STEP\n*STATIC\n*BOUNDARY,AMPLITUDE=A1\n1,1,1\n*END STEP\n";
  EXPECT_EQ("held 1.1 S0", acting_in(deck, 0));
  EXPECT_EQ("force 5.2=-5 A2 S1; moved 1.1=0.5 A3 S1", acting_in(deck, 1));
  EXPECT_EQ("force 5.2=-5 A2 S1; held 1.1 A2 S2", acting_in(deck, 2));
}

TEST(Acting, RecordsOfOwnSetsActInTheStepThatTheirNameTells) {
  support::Model model("*STEP\n*STATIC\n*CLOAD\n5,2,-5\n*END STEP\n*STEP\n*STATIC\n*END STEP\n");
  const content::Key wind = support::append_set(model.imported(), "LoadSets", "step 2: wind");
  const content::Key piers =
      support::append_set(model.imported(), "ConstraintSets", "Model, piers");
  support::append(model.table("NodalForces"), 5, {1, 10, 0, 3, 4, 0}, {wind});
  support::append(model.table("NodalBoundaryConditions"), 1, {0, 0, -1, 0, 0, 0}, {piers});
  EXPECT_EQ("force 5.2=-5 S1; held 1.3 S0", acting_in(model.subject(), 1));
  EXPECT_EQ("force 5.2=6 S2; force 5.3=8 S2; held 1.3 S0", acting_in(model.subject(), 2));
}

TEST(Acting, ForcesInTheGlobalSystemMeetThoseInTheSystemOfTheirNode) {
  // The system's first axis is the global second, and its second the negative first.
  support::Model model(
      "*TRANSFORM,NSET=TOP\n0,1,0,-1,0,0\n*STEP\n*STATIC\n*CLOAD\n5,1,2\n*END STEP\n");
  support::append(model.table("NodalForces"), 5, {1, 3, 0, 1, 0, 0}, {1});
  EXPECT_EQ("force 5.1=5 S1 x2", acting_in(model.subject(), 1));
}

}  // namespace
