#include "tests/deck/support.h"

namespace {

using support::in_step;
using support::kModel;
using support::read;
using support::records;

TEST(ImportDeck, EveryRowAndNodeIsARecordThatKeepsItsSignAndAxis) {
  const deck::Imported imported = deck::import(read(in_step(
      "*CLOAD\nTOP,2,-5\n5,2,1.5D0,7.\n** a comment\n\n8,6,0\n*CLOAD,AMPLITUDE=A2\n1,4,.1\n")));
  EXPECT_EQ("5: 1 -5 0 1 0 0; 6: 1 -5 0 1 0 0; 5: 1 1.5 0 1 0 0", records(imported, "NodalForces"));
  EXPECT_EQ("8: 1 0 0 0 1 0; 1: 3 0.1 1 0 0 0", records(imported, "NodalMoments"));
  EXPECT_TRUE(imported.remarks.empty());

  const auto& sets = imported.content.set_tables[0].sets;
  ASSERT_EQ(2U, sets.size());
  EXPECT_EQ("Step 1, CLOAD", sets[0].name);
  EXPECT_EQ("Step 1, CLOAD, AMPLITUDE=A2", sets[1].name);
  const content::Source& source = imported.source;
  EXPECT_EQ("AMPLITUDE=A2", source.sets[1].parameters);
  EXPECT_EQ(24, source.sets[1].line);
  EXPECT_EQ(3, source.amplitudes[1].number);
  EXPECT_EQ("A2", source.amplitudes[1].name);
  EXPECT_EQ(14, source.amplitudes[1].line);
}

TEST(ImportDeck, BoundariesAreSupportsDisplacementsOrTemperatures) {
  const deck::Imported imported = deck::import(
      read(kModel +
           "*BOUNDARY\n1,1,3\n2,2,,0.\n3,4\n3,1,2,.5\n4,11,11,20\n4,0,0,21\n*STEP\n*STATIC\n"
           "*BOUNDARY,OP=NEW,AMPLITUDE=A1\nLATER,6,6,-1E-3\n*NSET,NSET=LATER\n8\n*END STEP\n"));
  EXPECT_EQ("1: -1 -1 -1 0 0 0; 2: 0 -1 0 0 0 0; 3: 0 0 0 -1 0 0",
            records(imported, "NodalBoundaryConditions"));
  EXPECT_EQ("3: 0 0 1 0 0.5 0 0 0; 3: 0 1 1 0 0.5 0 0 0; 8: -1 2 2 0 -0.001 0 0 0",
            records(imported, "NodalPrescribedDisplacements"));
  EXPECT_EQ("4: 1 20 0 0 0 0; 4: 1 21 0 0 0 0", records(imported, "NodalAppliedTemperatures"));
  EXPECT_EQ("Model, BOUNDARY", imported.content.set_tables[1].sets.at(0).name);
  EXPECT_EQ("Model, BOUNDARY", imported.content.set_tables[0].sets.at(0).name);
  EXPECT_EQ("Step 1, BOUNDARY, OP=NEW, AMPLITUDE=A1",
            imported.content.set_tables[0].sets.at(1).name);
}

TEST(ImportDeck, TemperaturesHeatAndTransformsFollowTheirCards) {
  const deck::Imported imported = deck::import(
      read(kModel +
           "*TRANSFORM,NSET=TOP,TYPE=C\n0,0,0,0,0,1\n*TRANSFORM,NSET=SIX\n1,0,0,0,1,0\n"
           "*NSET,NSET=SIX\n6\n*INITIAL CONDITIONS,TYPE=TEMPERATURE\nTOP,293\n*STEP\n*STATIC\n"
           "*TEMPERATURE\n1,300\n*CFLUX\n2,0,5\n2,11,6\n*CLOAD\nTOP,1,1\n*END STEP\n*STATIC\n"
           "*CLOAD,OP=NEW\n*END STEP\n"));
  EXPECT_EQ("5: 293; 6: 293; 1: 300", records(imported, "NodalTemperatures"));
  EXPECT_EQ("2: 1 5 0; 2: 1 6 0", records(imported, "NodalHeatSources"));
  EXPECT_EQ("5: 1 1 1 0 0 1; 6: 1 1 1 0 0 2", records(imported, "NodalForces"));
  std::string names;
  for (const content::Set& set : imported.content.set_tables[0].sets) names += set.name + "; ";
  EXPECT_EQ("Initial; Step 1, TEMPERATURE; Step 1, CFLUX; Step 1, CLOAD; Step 2, CLOAD, OP=NEW; ",
            names)
      << "a procedure behind *END STEP begins a step, and a card without rows is a set too";
}

TEST(ImportDeck, WhatCannotBeCarriedStaysAndSaysWhy) {
  const struct {
    std::string card;
    const char* reason;  // a part of it
  } cases[] = {
      {"*CLOAD,SECTOR=2\n1,1,1\n", "19: No record holds the parameter SECTOR=2."},
      {"*BOUNDARY,MASS FLOW\n1,1,1,5\n", "19: No record holds the parameter MASSFLOW."},
      {"*CLOAD\n1,1,1\n7,1,1\n", "21: Node 7 belongs to a network or flow element"},
      {"*BOUNDARY\nALL,1\n", "20: Node 7 belongs to a network or flow element"},
      {"*BOUNDARY\n1,8,8,5\n", "20: Records hold the degrees of freedom 1 to 6 and 11, and not 8"},
      {"*BOUNDARY\n1,1,11\n", "20: Records hold the degrees of freedom 1 to 6 and 11, and not 1"},
      {"*BOUNDARY\n1,3,1\n", "20: '3' to '1' is no range"},
      {"*BOUNDARY\n1,1,3\n1,2,2,.5\n",
       "19: The card holds degree of freedom 2 of node 1 and moves"},
      {"*TEMPERATURE\n1,20,3\n", "20: Records hold no temperature gradient"},
      {"*CLOAD\n1,7,1\n", "20: Forces and moments have the degrees of freedom 1 to 6"},
      {"*CLOAD\n1,1,NaN\n", "20: 'NAN' is not a finite number."},
      {"*CLOAD\n1,1,0x10\n", "20: '0X10' is not a number that the solver reads."},
      {"*CLOAD\n1,1,1234567890123456789012\n", "20: The solver reads the first 20 characters"},
      {"*CLOAD\n00000000007,1,1\n", "20: The solver reads ten characters of a node number"},
      {"*CLOAD\nNOWHERE,1,1\n", "20: The deck has no set 'NOWHERE'."},
      {"*CLOAD\n9,1,1\n", "20: The deck does not define node 9"},
      {"*CLOAD,AMPLITUDE=NONE\n1,1,1\n", "19: The deck has no amplitude 'NONE'."},
      {"*DLOAD\n1,P1,1\n", "19: *DLOAD loads elements"},
      {"*INCLUDE,INPUT=load.inc\n1,1,1\n", "1: The card stands in an included file."},
      {"*CLOAD\n1,1,1\n*INCLUDE,INPUT=rows.inc\n", "19: Lines of the card stand in the included"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.card);
    const std::string text =
        kModel + "*ELEMENT,TYPE=D\n1,7,,8\n*STEP\n" + each.card + "*END STEP\n";
    const deck::Deck deck = read(text, {{"load.inc", "*CLOAD\n"}, {"rows.inc", "2,1,1\n"}});
    const deck::Imported imported = deck::import(deck);
    for (const content::Table& table : imported.content.tables) EXPECT_EQ(0U, table.size());
    ASSERT_EQ(1U, imported.remarks.size());
    const std::string remark = imported.remarks[0].text();
    EXPECT_NE(std::string::npos, remark.find("line " + std::string(each.reason))) << remark;
    EXPECT_EQ(text, support::written(deck, imported));
  }
}

}  // namespace
