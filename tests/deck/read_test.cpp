#include <filesystem>

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
  EXPECT_EQ(1, deck.step_count());
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

  // The same where a character is a byte of code page 1252, and two of the text.
  const std::string umlauts = "**" + std::string(1317, '\xfc');
  imported = deck::import(read(in_step("*CLOAD\n5,3,1\n" + umlauts + "6,3,10\n")));
  EXPECT_EQ("5: 1 1 0 0 1 0; 6: 1 10 0 0 1 0", support::records(imported, "NodalForces"));

  EXPECT_EQ(
      2U, read(in_step("*NSET,NSET=G,GENERATE\n**" + std::string(9000, 'x') + "\n")).remarks.size())
      << "one of the line, and one of all its pieces";

  std::string huge = in_step("*CLOAD\n5,3,1\n");
  huge.insert(huge.find("5,3,1"), std::string(10'000'000, '1'));
  imported = deck::import(read(huge));
  EXPECT_EQ("", support::records(imported, "NodalForces"));
  ASSERT_EQ(2U, imported.remarks.size());
  EXPECT_LT(imported.remarks[1].reason.size(), 200U);
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
      {"* A list\n* of points\n",
       "d.inp: The deck has no node and no step, so that there is nothing to import. Is it a whole "
       "deck?"},
      {"\xff\xfe*\n",
       "d.inp: The file 'd.inp' is text in UTF-16, which the solver cannot read. Save it as UTF-8 "
       "without a byte order mark."},
      {"\xef\xbb\xbf*NODE\n1,0\n",
       "d.inp, line 1: A byte order mark stands before the keyword, which the solver does not see "
       "for it. Save the file without one."},
      {"*NODE\r1,0\r2,0\r",
       "d.inp, line 1: A carriage return stands within the line. To the solver, lines end with a "
       "line feed; convert the line ends of the file."},
      {"*NODE\n1,0,x\n", "d.inp, line 2: 'X' is not a coordinate."},
      {"*NODE\n1,0,nan\n", "d.inp, line 2: 'NAN' is not a coordinate."},
      {"*NODE\n00000000007,0\n", "d.inp, line 2: '00000000007' is not the number of a node."},
      {"*NODE\n0,1\n", "d.inp, line 2: Node numbers begin with 1."},
      {"*ELEMENT,TYPE=C3D4\n1,1,2,3", "d.inp, line 2: Element 1 has 3 nodes; C3D4 has 4."},
      {"*NODE\n*INCLUDE,INPUT=Sub/None.inc\n", "d.inp, line 2: There is no file Sub/None.inc."},
      {"*NODE\n*INCLUDE\n", "d.inp, line 2: *INCLUDE names no file; INPUT= is missing."},
      {"*include,input=a\n", "b, line 1: The file 'a' includes itself."},
      {kModel + "*STEP\n*STATIC\n*CLO",
       "d.inp, line 18: The deck ends within step 1, without *END STEP, and the solver would not "
       "compute the step. Is the file cut off?"},
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
}

TEST(ReadDeck, AFileThatCannotBeOpenedIsNamedInFullWithTheReason) {
  const std::filesystem::path folder = std::filesystem::absolute("folder.inp");
  std::filesystem::create_directory(folder);
  const auto in_folder = [&](const char* name) {
    return '"' + (name == nullptr ? folder : folder / name).string() + '"';
  };
  const struct {
    const char* path;
    std::string reason;
  } cases[] = {
      {"folder.inp",
       "The path " + in_folder(nullptr) + " is that of a folder. Give the path of a file."},
      {"folder.inp/d.inp", "There is no file " + in_folder("d.inp") + "."},
      {"folder.inp/none/d.inp",
       "There is no file " + in_folder("none\\d.inp") + ", nor is there its folder."},
      {"nul.inp", "The path \"\\\\.\\nul\" is that of a device. Give the path of a file."},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.path);
    try {
      deck::read(each.path);
      ADD_FAILURE() << "was read";
    } catch (const deck::Error& error) {
      EXPECT_EQ(each.reason, error.what());
    }
  }
}

TEST(ReadDeck, WhatTheSolverDoesNotMindIsRead) {
  const deck::Deck deck =
      read("\xef\xbb\xbf** umlaut\r\r\n*NODE\r\n1,0\r\n*STEP\r\n*Heat Transfer\n*END STEP");
  EXPECT_EQ(1U, deck.mesh.node_ids.size());
  EXPECT_EQ("HEATTRANSFER", deck.steps.at(0).procedure);
  EXPECT_TRUE(deck.remarks.empty());
}

TEST(ReadDeck, WhatMayBeMissingIsRemarked) {
  const struct {
    std::string text;
    const char* remark;
  } cases[] = {
      {"*BOUND", "16: The deck ends without a step."},
      {"*STEP\n*STATIC\n*END STEP\n*STEP\n** end", "20: Step 2 has neither a card nor *END STEP."},
      {"*STEP\n*STEP\n*END STEP\n",
       "17: Step 2 begins within the one before, which has no *END STEP. The solver refuses such a "
       "deck."},
      {"*STEP\n*END STEP\n*STATIC\n*END STEP\n",
       "18: *STATIC begins step 2 without *STEP, which the solver computes and reports as an "
       "error."},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    const deck::Deck deck = read(kModel + each.text);
    ASSERT_EQ(1U, deck.remarks.size());
    EXPECT_EQ("d.inp, line " + std::string(each.remark), deck.remarks[0].text());
  }
}

TEST(ReadDeck, TheChecksumIsThatOfTheBytes) {
  // What sha256sum says of these files.
  EXPECT_EQ("5bf9eb3d33195c7ea64eda8caa216ec409c44cf62f1a581b66a31e85df35eb42",
            read("*STEP\n").checksum());
  EXPECT_EQ("c94ed9e81252a2b08e60b3a6b37950b9998227c0371afe658aa83125b4d64070",
            read("*STEP\n" + std::string(1000000, 'a')).checksum());
}

}  // namespace
