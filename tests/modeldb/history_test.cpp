// Steps that are undone and redone: what they are, what they say, and what refuses them.

#include "tests/modeldb/history_support.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::OtherProgram;
using ::testing::HasSubstr;

class UndoTest : public model_test::HistoryTest {
 protected:
  /// A force on vertex 12, in a set.
  com::Ptr<INodalForce> saved_force(double magnitude) {
    const auto force = make_force(magnitude);
    vertex_of(force)->put_ID(12);
    load_sets_of(force)->Add(make_load_set(L"Wind").get());
    EXPECT_EQ(save(force), S_OK) << model_test::last_sentence();
    return force;
  }
};

TEST_F(UndoTest, EveryOutermostChangeIsAStepWithANameOfItsOwnOrTheScripts) {
  saved_force(1);
  auto forces = create<NodalForces, INodalForces>();
  for (int i = 0; i < 3; ++i) forces->Add(make_force(i).get());
  ASSERT_EQ(database->put_Step(bstr(L"Wind from the east").get()), S_OK);
  for (const wchar_t* const no_name : {L"half a pair \xD83D", L"\xDE00", L"a\xFFFF"}) {
    EXPECT_SENTENCE(database->put_Step(bstr(no_name).get()), HasSubstr("no character"));
  }
  forces->Save(database.get(), com::Variant::omitted(), com::Variant::omitted());
  execute(L"BEGIN TRANSACTION");
  save(make_force(2));
  const auto unlinked = make_force(3);
  load_sets_of(unlinked)->Add(create<LoadSet, ILoadSet>().get());
  EXPECT_TRUE(FAILED(
      unlinked->Save(database.get(), com::Variant::boolean(false), com::Variant::boolean(false))));
  execute(L"DELETE FROM NodalForces WHERE NodalForceID = 1");
  execute(L"COMMIT TRANSACTION");
  execute(L"UPDATE LoadSets SET Description = 'Gale'");
  execute(L"UPDATE NodalForces SET Magnitude = 5 WHERE NodalForceID = 77");
  execute(L"BEGIN TRANSACTION");
  save(make_force(2));
  execute(L"ROLLBACK TRANSACTION");

  ASSERT_EQ(steps(), 4);
  EXPECT_EQ(name_of_step(0), "1 force saved");
  EXPECT_EQ(name_of_step(1), "Wind from the east");
  EXPECT_EQ(name_of_step(2), "1 force saved, 1 force deleted");
  EXPECT_EQ(name_of_step(3), "1 load set saved");
  com::Bstr changes;
  step(0)->get_Changes(changes.put());
  EXPECT_EQ(changes.view(),
            L"Vertices: 1 inserted; NodalForces: 1 inserted; LoadSets: 1 inserted; "
            L"NodalForceLoadSets: 1 inserted");
  long rows = 0;
  step(1)->get_Rows(com::Variant(bstr(L"nodalforces")), &rows);
  EXPECT_EQ(rows, 3);
}

TEST_F(UndoTest, KeysAreTheSameAfterRedoAndNeverGivenToOthers) {
  const auto force = saved_force(1);
  const std::string with_force = all_rows();
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForces") + count(L"Vertices") + count(L"NodalForceLoadSets"), "000");
  ASSERT_EQ(redo(), S_OK) << model_test::last_sentence();
  EXPECT_EQ(all_rows(), with_force);

  ASSERT_EQ(undo(), S_OK);
  const auto other = make_force(2);
  ASSERT_EQ(save(other), S_OK);
  EXPECT_NE(id_of(other), id_of(force)) << "the script still holds that number";
  EXPECT_SENTENCE(redo(), HasSubstr("nothing to redo"));

  execute(L"UPDATE NodalForces SET NodalForceID = 50");
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  const auto third = make_force(3);
  ASSERT_EQ(save(third), S_OK);
  EXPECT_GT(id_of(third), 50);
}

TEST_F(UndoTest, RunOfAScriptIsUndoneByItsFirstStepAndOutlivesTheModel) {
  saved_force(1);
  const std::string before = all_rows();
  const long first = next_number();
  for (int i = 0; i < 3; ++i) ASSERT_EQ(save(make_force(i)), S_OK);
  const std::string after = all_rows();
  reopen();
  ASSERT_EQ(undo(first), S_OK) << model_test::last_sentence();
  EXPECT_EQ(all_rows(), before);
  reopen();
  ASSERT_EQ(redo(first + 2), S_OK) << model_test::last_sentence();
  EXPECT_EQ(all_rows(), after);
  ASSERT_EQ(database->Undo(com::Variant(step(1).query<IDispatch>().get())), S_OK);
  EXPECT_EQ(all_rows(), before);
}

TEST_F(UndoTest, WhatCannotBeUndoneSaysWhy) {
  EXPECT_SENTENCE(undo(), HasSubstr("nothing to undo"));
  EXPECT_SENTENCE(redo(), HasSubstr("nothing to redo"));
  saved_force(1);
  EXPECT_SENTENCE(undo(7), HasSubstr("Step 7 is not in the history"));
  EXPECT_SENTENCE(database->Undo(com::Variant(bstr(L"yesterday"))), HasSubstr("is no step"));
  execute(L"BEGIN TRANSACTION");
  EXPECT_SENTENCE(undo(), HasSubstr("transaction is open"));
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_SENTENCE(execute(L"DELETE FROM orv_steps"), HasSubstr("refused"));
  EXPECT_EQ(value(L"SELECT Name FROM orv_steps"), "1 force saved");
  database->Close();
  SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_READONLY);
  ASSERT_EQ(open(file.path()), S_OK);
  EXPECT_SENTENCE(undo(), HasSubstr("write-protected"));
  EXPECT_EQ(steps(), 1);
  database->Close();
  SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_SENTENCE(undo(), HasSubstr("No model is open"));
}

TEST_F(UndoTest, StepWhoseRowsAnotherProgramChangedIsRefusedAsAWhole) {
  saved_force(1);
  const OtherProgram other(file.path());
  const auto refused = [&](const char* sql, const char* words) {
    SCOPED_TRACE(sql);
    reopen();
    const std::string step = file.read();
    other.run(sql);
    const std::string after = all_rows();
    EXPECT_SENTENCE(undo(), HasSubstr(words), HasSubstr("another program"),
                    HasSubstr("Nothing was changed"));
    EXPECT_EQ(all_rows(), after);
    database->Close();
    file.write(step);
    ASSERT_EQ(open(file.path()), S_OK);
  };
  refused("UPDATE NodalForces SET Magnitude = 7", "\"Magnitude\" is 7, not 1");
  refused("DELETE FROM NodalForceLoadSets", "of the table NodalForceLoadSets is gone");
  refused("INSERT INTO NodalForces (VertexID) VALUES (12)", "refer to VertexID 12");
  refused("INSERT INTO NodalForceLoadSets VALUES (1, 1)", "refer to");
  refused("ALTER TABLE NodalForces ADD COLUMN Colour TEXT", "other columns");

  execute(L"DELETE FROM NodalForces");
  refused("DELETE FROM Vertices", "refer to VertexID 12");
  refused("DELETE FROM LoadSets", "refer to LoadSetID 1");
  refused("INSERT INTO NodalForces (NodalForceID) VALUES (1)", "is there already");
  // What another program did elsewhere, or to the numbers of rows alone, is no hindrance.
  other.run(
      "INSERT INTO LoadSets (Description) VALUES ('Snow'); INSERT INTO NodalForces (VertexID) "
      "VALUES (4711); VACUUM");
  EXPECT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT Magnitude FROM NodalForces JOIN NodalForceLoadSets USING "
                  L"(NodalForceID)"),
            "1");
}

TEST_F(UndoTest, DamagedHistoryIsRefusedAndChangesNothing) {
  saved_force(1);
  const std::string rows = all_rows();
  const std::string all_of = "UPDATE orv_step_rows SET Changes = ";
  // Cut short, of a kind that there is not, a first value that is that of the row before, and gone.
  for (const std::string& damaged :
       {all_of + "substr(Changes, 1, length(Changes) - 1)",
        all_of + "CAST('?' || substr(Changes, 2) AS BLOB)",
        all_of + "CAST(substr(Changes, 1, 4) || 's' || substr(Changes, 6) AS BLOB)",
        std::string("DELETE FROM orv_step_rows"), std::string("UPDATE orv_steps SET IsUndone = 2"),
        std::string("UPDATE orv_steps SET IsUndone = NULL"),
        std::string("UPDATE orv_steps SET IsOvertaken = 'no'")}) {
    SCOPED_TRACE(damaged);
    reopen();
    const std::string intact = file.read();
    OtherProgram(file.path()).run(damaged.c_str());
    EXPECT_SENTENCE(undo(), HasSubstr("The history of the model is damaged"));
    EXPECT_EQ(all_rows(), rows);
    database->Close();
    file.write(intact);
    ASSERT_EQ(open(file.path()), S_OK);
  }
  EXPECT_EQ(undo(), S_OK) << model_test::last_sentence();
}

TEST_F(UndoTest, DamagedBoundsAreRefusedUntilTheyAreSetOrTheHistoryIsCleared) {
  saved_force(1);
  const auto repairs = history();
  for (const char* const damaged :
       {"MaximumSteps = -5", "MaximumBytes = -1", "MaximumBytes = 4294967297",
        "MaximumSteps = 'many'", "MaximumSteps = NULL, MaximumBytes = 0"}) {
    SCOPED_TRACE(damaged);
    const std::string rows = all_rows();
    OtherProgram(file.path()).run(("UPDATE orv_history SET " + std::string(damaged)).c_str());
    EXPECT_SENTENCE(save(make_force(2)), HasSubstr("The history of the model is damaged"));
    EXPECT_EQ(all_rows(), rows);
    const bool sets = std::string(damaged).ends_with("'many'");
    ASSERT_EQ(sets ? repairs->put_MaximumSteps(5) : repairs->Clear(), S_OK);
    ASSERT_EQ(save(make_force(2)), S_OK) << model_test::last_sentence();
    ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  }
}

TEST_F(UndoTest, LinksThatSayTheSameAreFoundAgainByWhatTheySay) {
  saved_force(1);
  execute(L"INSERT INTO NodalForceLoadSets VALUES (1, 1)");
  execute(L"INSERT INTO NodalForceLoadSets VALUES (1, 1)");
  OtherProgram(file.path()).run("UPDATE NodalForceLoadSets SET rowid = rowid + 100");
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForceLoadSets"), "2");
  execute(L"DELETE FROM LoadSets");
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0") << "the rules of links hold again";
}

TEST_F(UndoTest, RowsThatDifferInCaseAloneAreNotTakenForEachOther) {
  const OtherProgram other(file.path());
  other.run("CREATE TABLE Marks (Name TEXT COLLATE NOCASE); INSERT INTO Marks VALUES ('a')");
  execute(L"INSERT INTO Marks VALUES ('A')");
  other.run("UPDATE Marks SET rowid = rowid + 100");
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT Name FROM Marks"), "a");
}

TEST_F(UndoTest, HistoryIsBoundedAndSaysWhereItBegins) {
  ASSERT_EQ(history()->put_MaximumSteps(3), S_OK) << model_test::last_sentence();
  for (int i = 0; i < 5; ++i) ASSERT_EQ(save(make_force(i)), S_OK);
  EXPECT_EQ(steps(), 3);
  EXPECT_SENTENCE(undo(2), HasSubstr("goes from step 3 to step 5"));
  ASSERT_EQ(history()->put_MaximumBytes(std::stol(value(L"SELECT max(Bytes) FROM orv_steps"))),
            S_OK);
  EXPECT_EQ(steps(), 1);

  ASSERT_EQ(history()->put_MaximumBytes(2000), S_OK);
  database->put_Step(bstr(L"Long words").get());
  execute(L"UPDATE NodalForces SET Description = printf('%.2000c', 'x') WHERE NodalForceID = 1");
  EXPECT_EQ(steps(), 0);
  EXPECT_THAT(note(), HasSubstr("\"Long words\", that takes more than the 2000 bytes"));
  EXPECT_SENTENCE(undo(), HasSubstr("nothing to undo"), HasSubstr("more than the 2000 bytes"));
  // What a rollback takes along does not count.
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(save(make_force(9)), S_OK);
  const std::string before = value(L"SELECT count(*) FROM NodalForces");
  execute(L"BEGIN TRANSACTION");
  execute(L"UPDATE NodalForces SET Description = printf('%.2000c', 'y') WHERE NodalForceID = 2");
  execute(L"ROLLBACK TRANSACTION");
  execute(L"COMMIT TRANSACTION");
  EXPECT_EQ(steps(), 1);
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  ASSERT_EQ(redo(), S_OK);
  EXPECT_EQ(count(L"NodalForces"), before);

  ASSERT_EQ(history()->put_MaximumSteps(0), S_OK);
  ASSERT_EQ(save(make_force(9)), S_OK);
  EXPECT_EQ(steps(), 0);
  EXPECT_SENTENCE(undo(), HasSubstr("switched off"));
  EXPECT_SENTENCE(history()->put_MaximumSteps(-1), HasSubstr("cannot be -1"));
  ASSERT_EQ(history()->put_MaximumSteps(5), S_OK);
  ASSERT_EQ(save(make_force(9)), S_OK);
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_EQ(note(), "");
}

TEST_F(UndoTest, TextsOfMegabytesAndValuesOfEveryTypeComeBack) {
  const OtherProgram other(file.path());
  other.run("CREATE TABLE Values_ (A, B BLOB, C REAL, D TEXT COLLATE NOCASE)");
  execute(
      L"INSERT INTO Values_ VALUES (1, x'00ff', 3, 'a'), (1.0, x'', -0.5, 'A'), (NULL, NULL, "
      L"1e300, char(0)), (0.0, x'', 0.0, ''), (-0.0, x'', -0.0, ''), (9223372036854775807, 'text', "
      L"0.1, '\u00e4')");
  const std::string first = all_rows();
  execute(L"UPDATE Values_ SET D = D || 'z'");
  const std::string small = all_rows();
  execute(L"UPDATE Values_ SET A = printf('%.3000000c', 'x'), C = '250', D = upper(D)");
  const std::string large = all_rows();
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_TRUE(all_rows() == small);
  ASSERT_EQ(redo(), S_OK) << model_test::last_sentence();
  EXPECT_TRUE(all_rows() == large);
  ASSERT_EQ(undo(), S_OK);
  ASSERT_EQ(undo(), S_OK) << model_test::last_sentence();
  EXPECT_TRUE(all_rows() == first);
}

TEST_F(UndoTest, TableThatCannotBePutBackEndsTheHistoryBeforeIt) {
  saved_force(1);
  const OtherProgram other(file.path());
  other.run("CREATE TABLE Squares (A INTEGER, B AS (A * A))");
  execute(L"INSERT INTO Squares (A) VALUES (3)");
  EXPECT_EQ(steps(), 0);
  EXPECT_THAT(note(), HasSubstr("it has rows of a table with a computed column"));

  ASSERT_EQ(save(make_force(2)), S_OK);
  other.run("ALTER TABLE NodalForces ADD COLUMN Colour TEXT DEFAULT 'red'");
  execute(L"DELETE FROM NodalForces");
  EXPECT_EQ(steps(), 0);
  EXPECT_THAT(note(), HasSubstr("has a column with a default"));
}

}  // namespace
