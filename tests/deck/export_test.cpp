#include <cmath>

#include "tests/deck/support.h"

namespace {

using support::append;
using support::append_set;
using support::in_step;
using support::kModel;
using support::read;
using support::saved;
using support::table;
using support::written;

constexpr std::size_t kMagnitude = 1;

TEST(ExportDeck, AnUnchangedDeckKeepsEveryByte) {
  std::string text = in_step("* c load , op = mod \n TOP , 2 , 1.50 \n** why\n\n\t6,2,\t-1.D0\n");
  text = "** umlaut \xfc\n" + text + "** behind the end";
  EXPECT_EQ(text, written(read(text), saved(read(text))));
  std::string returns;
  for (const char c : text) returns += c == '\n' ? "\r\n" : std::string(1, c);
  EXPECT_EQ(returns, written(read(returns), saved(read(returns))));
}

TEST(ExportDeck, NamesInCodePage1252AreTextsInTheModelAndBytesInTheDeck) {
  const std::string top = kModel +
                          "** \x80\x81\x9f\n*NSET,NSET=\xdc"
                          "ber\n5\n"
                          "*AMPLITUDE,NAME=B\xf6\x80\n0,1\n*STEP\n*STATIC\n*CLOAD\n";
  const deck::Deck deck = read(top +
                               "\xdc"
                               "ber,1,5\n*END STEP\n");
  deck::Imported imported = saved(deck);
  EXPECT_EQ("B\u00f6\u20ac", imported.source.amplitudes.at(2).name);
  table(imported, "NodalForces").values[kMagnitude] = 7.5;
  append(table(imported, "NodalForces"), 6, {4, 1, 1, 0, 0, 0}, {1});
  EXPECT_EQ(top +
                "\xdc"
                "BER,1,7.5\n*CLOAD, AMPLITUDE=B\xf6\x80\n6,1,1\n*END STEP\n",
            written(deck, imported));
}

TEST(ExportDeck, OnlyChangedLinesAreWrittenAnewAndComments) {
  const deck::Deck deck = read(in_step(
      "*CLOAD\n** on top\nTOP,2,-5\n1,1,1\nTOP,3,2\n2,1,7\n*BOUNDARY\nALL,1,3\n8,4,5,.5\n"));
  deck::Imported imported = saved(deck);
  content::Table& forces = table(imported, "NodalForces");
  const std::size_t width = forces.columns.size();
  for (const std::size_t record : {0, 1}) forces.values[record * width + kMagnitude] *= 1.5;
  forces.values[4 * width + kMagnitude] = 3;  // the second of TOP,3
  support::erase(forces, 5);
  append(forces, 7, {1, 10, 3, 4, 0, 0}, {1});
  content::Table& moved = table(imported, "NodalPrescribedDisplacements");
  for (std::size_t i = 0; i < 2; ++i) moved.values[i * moved.columns.size() + 4] = .25;
  EXPECT_EQ(in_step("*CLOAD\n** on top\nTOP,2,-7.5\n1,1,1\n5,3,2\n6,3,3\n7,1,6\n7,2,8\n*BOUNDARY\n"
                    "ALL,1,3\n8,4,5,0.25\n"),
            written(deck, imported));
}

TEST(ExportDeck, EveryRowStandsForItsRecordWhenAsked) {
  const deck::Deck deck = read(in_step("*BOUNDARY\nTOP,1,3\n*CLOAD\nTOP,2,.5\n"));
  EXPECT_EQ(in_step("*BOUNDARY\n5,1,3\n6,1,3\n*CLOAD\n5,2,0.5\n6,2,0.5\n"),
            written(deck, saved(deck), {.every_row = true}));
}

TEST(ExportDeck, CardsGoWithTheirSetsAndNewStaysWithoutRows) {
  const deck::Deck deck =
      read(in_step("*CLOAD,OP=NEW\n1,1,1\n*CLOAD\n** comment\n2,1,1\n*BOUNDARY,OP=NEW\n"));
  deck::Imported imported = saved(deck);
  content::Table& forces = table(imported, "NodalForces");
  while (forces.size() > 0) support::erase(forces, 0);
  EXPECT_EQ(in_step("*CLOAD,OP=NEW\n** comment\n*BOUNDARY,OP=NEW\n"), written(deck, imported))
      << "what ends the loads of earlier steps";
  for (content::SetTable& sets : imported.content.set_tables) sets.sets.clear();
  EXPECT_EQ(in_step("** comment\n"), written(deck, imported));
}

TEST(ExportDeck, NewSetsFindTheirStepByTheirName) {
  const std::string end = "*STEP\n*STATIC\n*CLOAD\n1,1,1\n*END STEP\n*STEP\n*STATIC\n*END STEP\n";
  const deck::Deck deck = read(kModel + end);
  deck::Imported imported = saved(deck);
  content::Table& forces = table(imported, "NodalForces");
  append(forces, 2, {1, 5, -1, 0, 0, 0}, {append_set(imported, "LoadSets", "step 1: wind")});
  const content::Key second = append_set(imported, "LoadSets", "Step 2");
  append(forces, 3, {3, 5, 0, 0, 2, 0}, {second});
  append(table(imported, "NodalTemperatures"), 4, {20},
         {second, append_set(imported, "LoadSets", "Initial state")});
  append(table(imported, "NodalBoundaryConditions"), 1, {-1, 0, 1, 1, 0, 0},
         {append_set(imported, "ConstraintSets", "Model: piers")});
  EXPECT_EQ(
      kModel +
          "*BOUNDARY\n1,1\n1,3,4\n*INITIAL CONDITIONS, TYPE=TEMPERATURE\n4,20\n*STEP\n*STATIC\n"
          "*CLOAD\n1,1,1\n2,1,-5\n*END STEP\n*STEP\n*STATIC\n*CLOAD, AMPLITUDE=A2\n3,3,5\n"
          "*TEMPERATURE\n4,20\n*END STEP\n",
      written(deck, imported));
}

TEST(ExportDeck, AnotherAmplitudeIsAnotherCard) {
  const deck::Deck deck = read(in_step("*CLOAD,OP=NEW,AMPLITUDE=A1\n1,1,1\n2,1,1\n"));
  deck::Imported imported = saved(deck);
  table(imported, "NodalForces").values[0] = 1;
  EXPECT_EQ(in_step("*CLOAD,OP=NEW,AMPLITUDE=A1\n2,1,1\n*CLOAD\n1,1,1\n"), written(deck, imported));
}

TEST(ExportDeck, ForcesOfTheGlobalSystemAreTurnedIntoThatOfTheNode) {
  const deck::Deck deck =
      read(kModel +
           "*NSET,NSET=FOUR\n4\n*TRANSFORM,NSET=FOUR,TYPE=C\n0,0,0,0,0,1\n"
           "*TRANSFORM,NSET=TOP,TYPE=R\n0,1,0,-1,0,0\n*STEP\n*STATIC\n*END STEP\n");
  deck::Imported imported = saved(deck);
  content::Table& forces = table(imported, "NodalForces");
  const content::Key step = append_set(imported, "LoadSets", "Step 1");
  append(forces, 5, {1, 5, 1, 0, 0, 0}, {step});
  append(forces, 5, {1, 5, 1, 0, 0, 2}, {step});
  append(forces, 4, {1, 4, 3, 0, 0, 0}, {step});
  append(forces, 4, {1, 2, 0, 2, 0, 0}, {step});
  const std::string text = written(deck, imported);
  EXPECT_NE(std::string::npos, text.find("*CLOAD\n5,2,-5\n5,1,5\n4,2,-4\n4,1,2\n")) << text;
}

TEST(ExportDeck, WhatADeckCannotSayIsRefusedByName) {
  const struct {
    const char* table;
    std::vector<double> values;
    const char* set;  // in both tables
    const char* reason;
    content::Key vertex = 1;
  } cases[] = {
      {"NodalForces", {1, 5, 0, 0, 0, 0}, "Step 1", "has no direction: its vector is (0, 0, 0)."},
      {"NodalForces", {1, INFINITY, 1, 0, 0, 0}, "Step 1", "has a Magnitude that is not a finite"},
      {"NodalForces",
       {1, 5, 1, 0, 0, 1},
       "Step 1",
       "has the CoordinateSystemID 1, and node 1 is in no"},
      {"NodalForces",
       {7, 5, 1, 0, 0, 0},
       "Step 1",
       "has the MultiplierID 7, which is no amplitude"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Step 3", "is in the set 'Step 3', and the deck has 2"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Step 0", "begins like that of a step and tells"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "step -1", "begins like that of a step and tells"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Step 1x, wind", "begins like that of a step and tells"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Step 99999999999", "begins like that of a step and"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Wind", "is in the set 'Wind', whose name tells no step"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Model", "is in a set of the model part"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Initial", "is in a set of initial conditions"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, nullptr, "is in no set, and the deck has 2 steps."},
      {"NodalForces",
       {1, 5, 1, 0, 0, 0},
       "Step 1, CLOAD, OP=NEW",
       "the deck has no card with these"},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Step 1", "is on node 9, which the deck does not", 9},
      {"NodalForces", {1, 5, 1, 0, 0, 0}, "Step 1", "is on node 8 of a network or flow", 8},
      {"NodalPrescribedDisplacements", {0, 3, 1, 0, 5, 1, 1, 0}, "Step 1", "goes along (1, 1, 0)"},
      {"NodalPrescribedDisplacements", {0, 4, 1, 0, 5, 1, 1, 0}, "Step 1", "has the Direction 4"},
      {"NodalPrescribedDisplacements",
       {0, 0, 1, 2, 5, 0, 0, 0},
       "Step 1",
       "has the ActiveRangeID 2"},
      {"NodalAppliedTemperatures", {1, 5, 2, 0, 0, 0}, "Step 1", "has the Stiffness 2"},
      {"NodalHeatSources", {1, 5, .5}, "Step 1", "has the ActivationTime 0.5"},
  };
  const deck::Deck deck = read(kModel +
                               "*ELEMENT,TYPE=D\n1,7,,8\n*STEP\n*STATIC\n*END STEP\n*STEP\n"
                               "*STATIC\n*END STEP\n");
  for (const auto& each : cases) {
    SCOPED_TRACE(each.reason);
    deck::Imported imported = saved(deck);
    content::Table& records = table(imported, each.table);
    std::vector<content::Key> sets;
    if (each.set != nullptr) sets.push_back(append_set(imported, records.sets, each.set));
    append(records, each.vertex, each.values, sets);
    records.descriptions = {"Mine"};
    const deck::Exported exported = deck::write(deck, imported.content, imported.source);
    ASSERT_EQ(1U, exported.refusals.size());
    const std::string& refusal = exported.refusals[0];
    EXPECT_EQ(0U, refusal.find(records.name.substr(0, records.name.size() - 1).substr(0, 10)));
    EXPECT_NE(std::string::npos, refusal.find(" 1 'Mine' ")) << refusal;
    EXPECT_NE(std::string::npos, refusal.find(each.reason)) << refusal;
    EXPECT_EQ("", exported.text);
  }
}

TEST(ExportDeck, VectorsAlongAnAxisAndOtherKindsAreToldOrWritten) {
  const deck::Deck deck = read(in_step(""));
  deck::Imported imported = saved(deck);
  append(table(imported, "NodalPrescribedDisplacements"), 1, {-1, 3, 1, 0, 5, 0, -2, 0}, {});
  append(table(imported, "NodalForces"), 2, {1, -1.2345678901234567e-12, 1, 0, 0, 0}, {});
  imported.content.tables.push_back(
      {"NodalLumpedMasses", "LoadSets", {"Wx"}, {4}, {}, {1}, {1}, {{}}});
  const deck::Exported exported = deck::write(deck, imported.content, imported.source);
  EXPECT_NE(std::string::npos, exported.text.find("*BOUNDARY\n1,5,5,-5\n")) << exported.text;
  ASSERT_EQ(1U, exported.remarks.size());
  EXPECT_NE(std::string::npos, exported.remarks[0].find("NodalLumpedMass 4"))
      << exported.remarks[0];
  ASSERT_EQ(1U, exported.rounded.size());
  EXPECT_EQ("NodalForce 1", exported.rounded[0].record);
  EXPECT_LE(exported.rounded[0].text.size(), 20U);
}

TEST(ExportDeck, NodesThatDifferAreTold) {
  const deck::Deck deck = read(in_step("*CLOAD\n1,1,1\n"));
  deck::Imported imported = saved(deck);
  content::Vertices& vertices = imported.content.vertices;
  vertices.coordinates[2][1] += .5;
  vertices.ids[7] = 4711;
  EXPECT_EQ((std::vector<std::string>{
                "Nodes that have other coordinates in the model than in the deck, which keeps its "
                "own: 1; the first is 3.",
                "Nodes that are not in the deck, and not written: 1; the first is 4711.",
                "Nodes that are not in the model, and stay in the deck: 1."}),
            deck::write(deck, imported.content, imported.source).remarks);
}

TEST(ExportDeck, AnotherDeckIsNoticed) {
  const deck::Deck deck = read(in_step("*CLOAD\n1,1,1\n"));
  const deck::Deck other = read(in_step("*CLOAD\n2,1,1\n*CLOAD,AMPLITUDE=A1\n3,1,1\n"));
  const deck::Imported imported = saved(deck);
  const deck::Exported refused = deck::write(other, imported.content, imported.source);
  ASSERT_EQ(1U, refused.refusals.size());
  EXPECT_NE(std::string::npos, refused.refusals[0].find("another deck or was changed"));
  EXPECT_EQ(1U, deck::write(other, imported.content, {}).refusals.size());
  EXPECT_EQ(in_step("*CLOAD\n1,1,1\n"), written(other, imported, {.other_deck = true}));
}

}  // namespace
