#include "modeldb/engine/database.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <limits>

#include "modeldb/engine/failure.h"
#include "modeldb/engine/row_text.h"
#include "modeldb/engine/savepoint.h"
#include "tests/engine/support.h"

namespace modeldb {
namespace {

using testing::HasSubstr;

std::string contents(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void write_file(const std::wstring& path, std::string_view bytes) {
  std::ofstream(std::filesystem::path(path), std::ios::binary) << bytes;
}

// --- Files ---------------------------------------------------------------------------------------

TEST(DatabaseFile, IsMadeAndFoundAgainWithWhatWasWritten) {
  const TemporaryFile file;
  {
    const auto database = Database::open(file.path());
    EXPECT_EQ(database->schema_version(), 0);
    database->execute(L"CREATE TABLE t (a)");
    database->set_schema_version(3);
    database->execute(L"INSERT INTO t VALUES (?)", L"Träger");
  }
  const auto database = Database::open(file.path());
  EXPECT_EQ(database->schema_version(), 3);
  const auto rows = database->query(L"SELECT a FROM t");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->text(0), L"Träger");
}

TEST(DatabaseFile, ThatIsNoModelDatabaseIsRefusedAndLeftAlone) {
  const TemporaryFile text;
  write_file(text.path(), "*NODE, NSET=all\n1, 0., 0., 0.\n" + std::string(2000, '*'));
  const auto before = contents(text.path());
  const auto failure = failure_of([&] { Database::open(text.path()); });
  EXPECT_EQ(failure.result, kCannotOpenFile);
  EXPECT_THAT(failure.sentence, HasSubstr(L"is no model database"));
  EXPECT_THAT(failure.sentence, HasSubstr(text.path()));
  EXPECT_EQ(contents(text.path()), before);
}

TEST(DatabaseFile, OfAnotherProgramIsRefusedAndLeftAlone) {
  const TemporaryFile other;
  sqlite3* handle = nullptr;
  const std::string path = std::filesystem::path(other.path()).string();
  ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
  sqlite3_exec(handle, "CREATE TABLE bookmarks (url)", nullptr, nullptr, nullptr);
  sqlite3_close(handle);
  const auto before = contents(other.path());

  const auto failure = failure_of([&] { Database::open(other.path()); });
  EXPECT_EQ(failure.result, kCannotOpenFile);
  EXPECT_THAT(failure.sentence, HasSubstr(L"another program"));
  EXPECT_EQ(contents(other.path()), before);
}

TEST(DatabaseFile, ThatCannotBeReachedIsRefused) {
  for (const auto* path : {L"", L"C:\\no such folder\\a.orvdb", L"C:\\windows"}) {
    EXPECT_EQ(failure_of([&] { Database::open(path); }).result, kCannotOpenFile) << path;
  }
}

TEST(DatabaseFile, CannotRunAnythingByItsSchema) {
  const TemporaryFile file;
  {
    const auto database = Database::open(file.path());
    database->execute(L"CREATE TABLE t (a)");
    database->execute(L"CREATE TABLE u (a)");
    database->execute(L"CREATE TRIGGER x AFTER INSERT ON t BEGIN DELETE FROM u; END");
    database->execute(L"CREATE VIEW v AS SELECT a FROM t");
    database->execute(L"INSERT INTO u VALUES (1)");
  }
  const auto database = Database::open(file.path());
  database->execute_text(L"INSERT INTO t VALUES (1)", Trust::kWrite);
  const auto rows = database->query(L"SELECT count(*) FROM u");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->integer(0), 1);
  EXPECT_NE(failure_of([&] { database->execute_text(L"SELECT a FROM v", Trust::kRead); }).result,
            S_OK);
}

// --- Values --------------------------------------------------------------------------------------

using Values = WithDatabase;

TEST_F(Values, OfADoubleKeepEveryBitOnTheWayThroughAText) {
  for (const double number :
       {0.1, 1.0 / 3, 5e-324, -2.2250738585072014e-308, 1.7976931348623157e308, 1e22, 2e-7}) {
    wchar_t text[200];
    swprintf(text, 200, L"INSERT INTO Forces (Magnitude) VALUES (%.17g)", number);
    write(text);
    const auto rows = database_->query(L"SELECT Magnitude FROM Forces WHERE ForceID = ?",
                                       database_->last_insert_id());
    ASSERT_TRUE(rows->step());
    EXPECT_EQ(rows->real(0), number) << text;
  }
}

TEST_F(Values, AreTheSameWhetherBoundOrLeftInTheText) {
  write(L"INSERT INTO Forces VALUES (1, 'Bob''s ''load''', -5)");
  write(L"INSERT INTO Forces VALUES (2, 'Bobs load', 0 - 5)");
  auto rows = database_->query(L"SELECT Description, Magnitude FROM Forces ORDER BY ForceID");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->text(0), L"Bob's 'load'");
  EXPECT_EQ(rows->real(1), -5);
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->text(0), L"Bobs load");
  EXPECT_EQ(rows->real(1), -5);
}

TEST_F(Values, OfADescriptionAreNeverRunAsSql) {
  for (const std::wstring description : {L"Bob's load", L"x', 1); DELETE FROM Forces; --",
                                         L"'||(SELECT Entry FROM orv_history)||'"}) {
    BoundText row;
    row.text = L"INSERT INTO Forces (Description, Magnitude) VALUES (";
    const std::wstring text = L"'" + description + L"', 0.5";
    append_values(text, description, row);
    row.text += L")";
    const auto insert = database_->prepare(row.text);
    insert->bind_all(row.values);
    insert->step();
    const auto rows = database_->query(L"SELECT Description FROM Forces WHERE ForceID = ?",
                                       database_->last_insert_id());
    ASSERT_TRUE(rows->step());
    EXPECT_EQ(rows->text(0), description);
  }
  EXPECT_EQ(count(L"Forces"), 3);
}

// --- What clients may do
// --------------------------------------------------------------------------

using Clients = WithDatabase;

TEST_F(Clients, ReadAndChangeRows) {
  EXPECT_EQ(write(L"INSERT INTO Forces VALUES (1, 'a', 2.5)"), 1);
  EXPECT_EQ(write(L"INSERT INTO Forces VALUES (2, 'b', 3.5)"), 1);
  EXPECT_EQ(write(L"UPDATE Forces SET Magnitude = 4 WHERE ForceID < 3"), 2);
  EXPECT_EQ(write(L"DELETE FROM Forces WHERE Description = 'a'"), 1);
  EXPECT_EQ(write(L"SELECT * FROM Forces"), 0);
  const auto result = database_->execute_text(
      L"SELECT sum(Magnitude) FROM Forces WHERE Description LIKE 'B%' AND round(Magnitude) = 4",
      Trust::kRead);
  ASSERT_TRUE(result.query->step());
  EXPECT_EQ(result.query->real(0), 4);
}

TEST_F(Clients, MayWriteLinkRowsOfRecordsWithoutAnId) {
  EXPECT_EQ(write(L"INSERT INTO ForceLoadSets (LoadSetID, ForceID) VALUES (3, 0)"), 1);
}

TEST_F(Clients, CannotDoAnythingElse) {
  const auto before = contents(file_.path());
  for (const auto* text :
       {L"DROP TABLE Forces",
        L"CREATE TABLE x (a)",
        L"ALTER TABLE Forces RENAME TO x",
        L"PRAGMA writable_schema = ON",
        L"PRAGMA user_version = 9",
        L"ATTACH 'c:\\x' AS x",
        L"VACUUM",
        L"SELECT load_extension('x')",
        L"SELECT randomblob(9)",
        L"INSERT INTO sqlite_master VALUES (1, 2, 3, 4, 5)",
        L"UPDATE orv_history SET Entry = 'x'",
        L"DELETE FROM ORV_History",
        L"SELECT Entry FROM orv_history",
        L"SELECT (SELECT Entry FROM orv_history)",
        L"SELECT * FROM pragma_user_version",
        L"INSERT INTO Forces (Description) SELECT Entry FROM orv_history",
        L"INSERT INTO Forces (Description) VALUES (''||(SELECT Entry FROM orv_history)||'')",
        L"WITH x AS (SELECT 1) DELETE FROM Forces",
        L"SELECT name FROM sqlite_master",
        L"WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c) SELECT n FROM c"}) {
    const auto failure = failure_of([&] {
      if (const auto query = database_->execute_text(text, Trust::kWrite).query) query->step();
    });
    EXPECT_NE(failure.result, S_OK) << text;
    EXPECT_FALSE(failure.sentence.empty()) << text;
  }
  EXPECT_EQ(contents(file_.path()), before);
}

TEST_F(Clients, ThatOnlyReadCannotChange) {
  for (const auto* text :
       {L"INSERT INTO Forces VALUES (1, 'a', 1)", L"BEGIN TRANSACTION",
        L"WITH x AS (SELECT 1) INSERT INTO Forces (Magnitude) SELECT * FROM x"}) {
    EXPECT_EQ(failure_of([&] { database_->execute_text(text, Trust::kRead); }).result,
              kPermissionDenied)
        << text;
  }
  EXPECT_FALSE(database_->in_transaction());
  EXPECT_EQ(count(L"Forces"), 0);
}

TEST_F(Clients, StayConfinedWhenAStatementIsCompiledAnewWhileItRuns) {
  write(L"INSERT INTO Forces VALUES (1, 'a', 1)");
  const auto allowed = database_->execute_text(L"SELECT * FROM Forces", Trust::kRead).query;
  ASSERT_TRUE(allowed->step());
  allowed->reset();
  database_->execute(L"ALTER TABLE Forces RENAME TO orv_forces");
  database_->execute(L"CREATE VIEW Forces AS SELECT * FROM orv_forces");
  EXPECT_NE(failure_of([&] { allowed->step(); }).result, S_OK);
}

TEST_F(Clients, LearnWhatTheirStatementWouldHaveDone) {
  const auto failure = failure_of([&] { write(L"DELETE FROM orv_history"); });
  EXPECT_EQ(failure.result, kPermissionDenied);
  EXPECT_THAT(failure.sentence, HasSubstr(L"delete from the table orv_history"));

  const auto unknown = failure_of([&] { write(L"DELETE FROM Force WHERE ForceID = 1"); });
  EXPECT_EQ(unknown.result, kErrorsInCommand);
  EXPECT_THAT(unknown.sentence, HasSubstr(L"no such table: Force"));
}

TEST_F(Clients, LearnWhichRuleTheirValuesBreak) {
  write(L"INSERT INTO Forces VALUES (1, 'a', 1)");
  const auto failure = failure_of([&] { write(L"INSERT INTO Forces VALUES (1, 'b', 1)"); });
  EXPECT_EQ(failure.result, kIntegrityViolation);
  EXPECT_THAT(failure.sentence, HasSubstr(L"VALUES (1, 'b', 1)"));
  EXPECT_THAT(failure.sentence, HasSubstr(L"Forces.ForceID"));
}

// --- Statements that are shared
// ---------------------------------------------------------------------

using Statements = WithDatabase;

TEST_F(Statements, OfTheSameTextCanRunAtTheSameTime) {
  for (int i = 1; i <= 3; ++i) database_->execute(L"INSERT INTO Forces (ForceID) VALUES (?)", i);
  int pairs = 0;
  const auto outer = database_->query(L"SELECT ForceID FROM Forces");
  while (outer->step()) {
    const auto inner = database_->query(L"SELECT ForceID FROM Forces");
    while (inner->step()) ++pairs;
  }
  EXPECT_EQ(pairs, 9);
}

TEST_F(Statements, ForgetTheirValuesBetweenUses) {
  database_->execute(L"INSERT INTO Forces (ForceID, Magnitude) VALUES (?, ?)", 1, 2.5);
  const auto again = database_->prepare(L"INSERT INTO Forces (ForceID, Magnitude) VALUES (?, ?)");
  again->bind(1, 2);
  again->step();
  const auto rows = database_->query(L"SELECT Magnitude FROM Forces WHERE ForceID = 2");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->type(0), Statement::Type::kNull);
}

TEST_F(Statements, OfManyTextsDoNotPileUp) {
  const auto held = database_->query(L"SELECT 'held'");
  for (int i = 0; i < 2000; ++i) {
    const auto query = database_->query(L"SELECT " + std::to_wstring(i));
    ASSERT_TRUE(query->step());
    ASSERT_EQ(query->integer(0), i);
  }
  ASSERT_TRUE(held->step());
  EXPECT_EQ(held->text(0), L"held");
}

TEST_F(Statements, FindColumnsByNameAndByTable) {
  const auto join = database_->query(
      L"SELECT F.*, L.*, 1 AS \"F.Answer\" FROM Forces AS F JOIN ForceLoadSets L "
      L"ON F.ForceID = L.ForceID");
  const Columns& columns = join->columns();
  EXPECT_EQ(columns.find(L"magnitude"), 2);
  EXPECT_EQ(columns.find(L"F.ForceID"), 0);
  EXPECT_EQ(columns.find(L"l.forceid"), 4);
  EXPECT_EQ(columns.find(L"ForceLoadSets.ForceID"), 4);
  EXPECT_EQ(columns.find(L"Forces.Magnitude"), 2);
  EXPECT_EQ(columns.find(L"F.Answer"), 5);
  for (const auto* name : {L"ForceID", L"G.ForceID", L"F.LoadSetID", L"F.", L""}) {
    EXPECT_EQ(failure_of([&] { (void)columns.find(name); }).result, kItemNotFound) << name;
  }
}

TEST_F(Statements, DoNotGuessWhichOccurrenceOfATableIsMeant) {
  const auto join = database_->query(L"SELECT A.Magnitude FROM Forces A, Forces B");
  EXPECT_EQ(failure_of([&] { (void)join->columns().find(L"B.Magnitude"); }).result, kItemNotFound);
  EXPECT_EQ(join->columns().find(L"Magnitude"), 0);
}

// --- Transactions
// ----------------------------------------------------------------------------------

using Transactions = WithDatabase;

TEST_F(Transactions, KeepOrUndoEverythingInThem) {
  write(L"BEGIN TRANSACTION");
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  write(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(count(L"Forces"), 0);
  write(L"BEGIN TRANSACTION");
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  write(L"COMMIT TRANSACTION");
  EXPECT_EQ(count(L"Forces"), 1);
}

TEST_F(Transactions, DoNotNestAndDoNotEndWithoutBeginning) {
  for (const auto* text : {L"COMMIT TRANSACTION", L"ROLLBACK TRANSACTION"}) {
    EXPECT_EQ(failure_of([&] { write(text); }).result, kInvalidTransaction) << text;
  }
  write(L"BEGIN TRANSACTION");
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  const auto failure = failure_of([&] { write(L"BEGIN TRANSACTION"); });
  EXPECT_EQ(failure.result, kInvalidTransaction);
  EXPECT_THAT(failure.sentence, HasSubstr(L"Commit it or roll it back"));
  write(L"COMMIT TRANSACTION");
  EXPECT_EQ(count(L"Forces"), 1);
}

TEST_F(Transactions, UndoOnlyThePieceThatFailed) {
  database_->begin();
  {
    Savepoint kept(*database_);
    write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
    {
      Savepoint undone(*database_);
      write(L"INSERT INTO Forces (Magnitude) VALUES (2)");
    }
    kept.release();
  }
  database_->commit();
  const auto rows = database_->query(L"SELECT Magnitude FROM Forces");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->real(0), 1);
  EXPECT_FALSE(rows->step());
}

TEST_F(Transactions, AreMadeForAPieceOfWorkOutsideOfOne) {
  {
    Savepoint undone(*database_);
    write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  }
  EXPECT_EQ(count(L"Forces"), 0);
  {
    Savepoint kept(*database_);
    write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
    kept.release();
  }
  EXPECT_FALSE(database_->in_transaction());
  EXPECT_EQ(count(L"Forces"), 1);
}

TEST_F(Transactions, ThatTheDatabaseHadToUndoAreNotContinuedUnnoticed) {
  database_->begin();
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  // What SQLite does by itself when the disk is full, for example.
  database_->execute(L"ROLLBACK");
  EXPECT_EQ(failure_of([&] { write(L"INSERT INTO Forces (Magnitude) VALUES (2)"); }).result,
            kInvalidTransaction);
  EXPECT_EQ(failure_of([&] { database_->commit(); }).result, kInvalidTransaction);
  EXPECT_FALSE(database_->in_transaction());
  EXPECT_EQ(count(L"Forces"), 0);
}

TEST_F(Transactions, OfAnotherProgramAreWaitedForAndThenNamed) {
  const auto other = Database::open(file_.path());
  other->begin();
  const auto failure = failure_of([&] { database_->begin(); });
  EXPECT_EQ(failure.result, kLocked);
  EXPECT_THAT(failure.sentence, HasSubstr(L"in use by another program"));
  other->rollback();
  database_->begin();
  database_->rollback();
  other->close();
}

// --- The end
// -----------------------------------------------------------------------------------------

using Closing = WithDatabase;

TEST_F(Closing, UndoesWhatIsNotCommittedAndFreesTheFile) {
  database_->begin();
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  const auto held = database_->query(L"SELECT * FROM Forces");
  ASSERT_TRUE(held->step());
  database_->close();
  EXPECT_TRUE(std::filesystem::remove(file_.path()));
}

TEST_F(Closing, MakesEveryLaterUseFailWithASentence) {
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  const auto held = database_->query(L"SELECT * FROM Forces");
  ASSERT_TRUE(held->step());
  database_->close();
  database_->close();
  const std::function<void()> uses[] = {[&] { held->step(); },
                                        [&] { (void)held->integer(0); },
                                        [&] { (void)held->columns(); },
                                        [&] { write(L"DELETE FROM Forces"); },
                                        [&] { database_->begin(); },
                                        [&] { database_->commit(); },
                                        [&] { (void)database_->last_insert_id(); }};
  for (const auto& use : uses) {
    const auto failure = failure_of(use);
    EXPECT_EQ(failure.result, kObjectClosed);
    EXPECT_THAT(failure.sentence, HasSubstr(L"is closed. Open it again"));
  }
}

TEST_F(Closing, LeavesStatementsThatOutliveTheDatabaseSafe) {
  auto held = database_->query(L"SELECT * FROM Forces");
  const auto second = database_->query(L"SELECT * FROM Forces");
  database_->close();
  database_.reset();
  database_ = Database::open(file_.path());
  held = {};
  EXPECT_EQ(failure_of([&] { second->step(); }).result, kObjectClosed);
}

}  // namespace
}  // namespace modeldb
