#include "tests/deck/support.h"

namespace {

using support::in_step;
using support::kModel;
using support::read;

const std::vector<std::int32_t>& set(const deck::Deck& deck, const char* name) {
  return deck.sets.at(name).nodes;
}

TEST(ReadDeck, CaseBlanksTabsAndReturnsDoNotMatter) {
  const deck::Deck deck = read(
      "\t* h eading\r\nany text, 1\r\n * * a comment\r\n*No de , n set = a ll\r\n 1 , "
      "0.,\t1.5D0,-2\r\n"
      "\r\n1 2,1,0,0\r\n*ELEMENT,TYPE=B31\r\n1,1,12\r\n*STEP\r\n*END STEP");
  ASSERT_EQ(2U, deck.mesh.node_ids.size());
  EXPECT_EQ((std::array<double, 3>{0, 1.5, -2}), deck.mesh.coordinates[0]);
  EXPECT_EQ((std::vector<std::int32_t>{1, 12}), set(deck, "ALL"));
  EXPECT_EQ("B31", deck.mesh.blocks.at(0).type);
  EXPECT_EQ(1, deck.steps);
  EXPECT_TRUE(deck.remarks.empty());
}

TEST(ReadDeck, SetsKeepOrderAndDuplicatesAndKnowOnlyWhatStandsBefore) {
  const deck::Deck deck =
      read(kModel +
           "*NSET,NSET=A\n3,1,3,LATER\n*NSET,NSET=LATER\n8\n*NSET,NSET=A\nTOP,A\n"
           "*NSET,NSET=R,GENERATE\n7,100\n1,5,2\n*NSET,NSET=E,ELSET=X\n1E2\n");
  EXPECT_EQ((std::vector<std::int32_t>{3, 1, 3, 5, 6}), set(deck, "A"));
  EXPECT_EQ((std::vector<std::int32_t>{7, 8, 1, 3, 5}), set(deck, "R"));
  EXPECT_TRUE(set(deck, "E").empty());
  ASSERT_EQ(4U, deck.remarks.size());
  EXPECT_EQ(
      "d.inp, line 17: The solver drops the set 'LATER', which is not defined before this "
      "line.",
      deck.remarks[0].text());
  EXPECT_EQ("d.inp, line 21: The set 'A' names itself, which adds nothing.",
            deck.remarks[1].text());
}

TEST(ReadDeck, ElementsGoOnOverLines) {
  const deck::Deck deck =
      read(kModel +
           "*ELEMENT,TYPE=C3D8R\n1,1,2,3,4,\n5,6,7,8\n2,1,2,3,4,5,6,7,8,\n"
           "*ELEMENT,TYPE=D\n3,,7,8\n*ELEMENT,TYPE=U1\n4,1\n*ELEMENT,TYPE=DASHPOTA\n5,1,2\n");
  const auto& blocks = deck.mesh.blocks;
  ASSERT_EQ(3U, blocks.size());
  EXPECT_EQ((std::vector<std::int32_t>{1, 2}), blocks[0].ids);
  EXPECT_EQ(16U, blocks[0].nodes.size());
  EXPECT_EQ((std::vector<std::int32_t>{0, 7, 8}), blocks[1].nodes);
  EXPECT_TRUE(deck.network_nodes.contains(7) && !deck.network_nodes.contains(1));
  ASSERT_EQ(2U, deck.remarks.size());
  EXPECT_EQ(std::string::npos, deck.remarks[0].text().find("line 18")) << deck.remarks[0].text();
}

TEST(ReadDeck, LongLinesAreReadInPieces) {
  // 1319 characters are a comment, and the solver takes the rest for a data line.
  const std::string comment = "**" + std::string(1317, 'x');
  deck::Imported imported = deck::import(read(in_step("*CLOAD\n5,3,1\n" + comment + "6,3,10\n")));
  EXPECT_EQ("5: 1 1 0 0 1 0; 6: 1 10 0 0 1 0", support::records(imported, "NodalForces"));
  ASSERT_EQ(1U, imported.remarks.size());
  EXPECT_EQ(20U, imported.remarks[0].line);

  std::string huge = in_step("*CLOAD\n5,3,1\n");
  huge.insert(huge.find("5,3,1"), std::string(10'000'000, '1'));
  imported = deck::import(read(huge));
  EXPECT_EQ("", support::records(imported, "NodalForces"));
  EXPECT_EQ(2U, imported.remarks.size());
}

TEST(ReadDeck, WhatIsNoDeckIsRefusedWithFileAndLine) {
  const struct {
    std::string text;
    std::string message;
  } cases[] = {
      {"", "d.inp: No line begins with an asterisk and a keyword; this is not a deck."},
      {"\x89PNG\n1,2,3",
       "d.inp: No line begins with an asterisk and a keyword; this is not a deck."},
      {std::string("*NODE\n1,\0,3\n", 12),
       "d.inp, line 2: The line holds a byte 0; a deck is a text."},
      {"*NODE\n1,0,x\n", "d.inp, line 2: 'X' is not a coordinate."},
      {"*NODE\n1,0,nan\n", "d.inp, line 2: 'NAN' is not a coordinate."},
      {"*NODE\n00000000007,0\n", "d.inp, line 2: '00000000007' is not the number of a node."},
      {"*NODE\n0,1\n", "d.inp, line 2: Node numbers begin with 1."},
      {"*ELEMENT,TYPE=C3D4\n1,1,2,3", "d.inp, line 2: Element 1 has 3 nodes; C3D4 has 4."},
      {"*NODE\n*INCLUDE,INPUT=Sub/None.inc\n",
       "d.inp, line 2: The file 'Sub/None.inc' cannot be opened."},
      {"*NODE\n*INCLUDE\n", "d.inp, line 2: *INCLUDE names no file; INPUT= is missing."},
      {"*include,input=a\n", "b, line 1: The file 'a' includes itself."},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.message);
    try {
      read(each.text, {{"a", "** a\n*INCLUDE,INPUT=b\n"}, {"b", "*INCLUDE, INPUT=a\n"}});
      ADD_FAILURE() << "was read";
    } catch (const deck::Error& error) {
      EXPECT_EQ(each.message, error.what());
    }
  }
  EXPECT_THROW(deck::read("no such file.inp"), deck::Error);
}

TEST(ReadDeck, WhatIsCutOffIsRemarked) {
  deck::Deck deck = read(kModel + "*STEP\n*STATIC\n*CLO");
  ASSERT_EQ(1U, deck.remarks.size());
  EXPECT_EQ("d.inp, line 18: The deck ends within step 1, without *END STEP. Is the file cut off?",
            deck.remarks[0].text());
  deck = read(kModel + "*BOUND");
  ASSERT_EQ(1U, deck.remarks.size());
  EXPECT_EQ("d.inp, line 16: The deck ends without a step.", deck.remarks[0].text());
}

TEST(ReadDeck, TheChecksumIsThatOfTheBytes) {
  // What sha256sum says of these files.
  EXPECT_EQ("c65916ecfcb528d95bff8eab2a8687c8688aa59b0917a01b4272aa34728e7c3a",
            read("*A\n").checksum());
  EXPECT_EQ("f28db595845e07923d932658a461f615dc9bb817d6531b6569198f598bd3e12e",
            read("*A\n" + std::string(1000000, 'a')).checksum());
}

}  // namespace
