#include <gmock/gmock.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <new>

#include "modeldb/base/failure.h"
#include "modeldb/engine/savepoint.h"
#include "modeldb/sqlite/sqlite_engine.h"
#include "modeldb/sqlite/sqlite_statement.h"
#include "tests/engine/support.h"

namespace {

/// SQLite counts its memory only when it is told so before it is used.
const bool counts_memory = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 1) == SQLITE_OK;

constexpr std::size_t kEverything = static_cast<std::size_t>(-1);
std::size_t allocations_left = kEverything;

}  // namespace

void* operator new(std::size_t size) {
  if (allocations_left == 0) throw std::bad_alloc();
  if (allocations_left != kEverything) --allocations_left;
  if (void* const block = std::malloc(size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace modeldb {
namespace {

/// While it lives, so many allocations succeed, and no more.
class LimitedMemory {
 public:
  explicit LimitedMemory(std::size_t allowed) { allocations_left = allowed; }
  LimitedMemory(const LimitedMemory&) = delete;
  ~LimitedMemory() { allocations_left = kEverything; }
};

using model_test::TemporaryFile;
using testing::HasSubstr;

// --- Files ---------------------------------------------------------------------------------------

TEST(DatabaseFile, OfAnotherProgramIsRefusedAndLeftAloneWithItsLog) {
  for (const auto* journal : {"DELETE", "WAL"}) {
    const TemporaryFile other;
    const TemporaryFile copy;
    sqlite3* handle = nullptr;
    const std::string path = std::filesystem::path(other.path()).string();
    ASSERT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK);
    const std::string sql = std::string("PRAGMA journal_mode = ") + journal +
                            "; CREATE TABLE bookmarks (url); INSERT INTO bookmarks VALUES (1)";
    ASSERT_EQ(sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    // A copy, since the program would keep its log from being tidied up.
    std::string before[2];
    for (int i = 0; const std::wstring suffix : {L"", L"-wal"}) {
      before[i++] = other.read(suffix);
      if (!std::filesystem::exists(other.path() + suffix)) continue;
      std::filesystem::copy_file(other.path() + suffix, copy.path() + suffix);
    }
    sqlite3_close(handle);

    const auto failure = failure_of([&] { open_file(copy.path()); });
    EXPECT_EQ(failure.result, kCannotOpenFile);
    EXPECT_THAT(failure.sentence, HasSubstr(L"another program"));
    EXPECT_EQ(copy.read(), before[0]) << journal;
    EXPECT_EQ(copy.read(L"-wal"), before[1]) << journal;
  }
}

TEST(DatabaseFile, IsNoneByAPathThatNamesNoFile) {
  using namespace std::literals;
  for (const auto path : {L""sv, L" "sv, L"\t "sv, L"\0"sv, L"\0x.orvdb"sv, L"x.orvdb\0y"sv,
                          L"NUL"sv, L"w\\aux"sv, L"\\\\.\\NUL"sv, L"\\\\.\\C:"sv}) {
    const auto failure = failure_of([&] { open_file(path); });
    EXPECT_EQ(failure.result, kCannotOpenFile) << std::wstring(path);
    EXPECT_THAT(failure.sentence, HasSubstr(L"Give the path of a file.")) << std::wstring(path);
  }
}

TEST(DatabaseFile, CannotRunAnythingByItsSchema) {
  const TemporaryFile file;
  {
    const auto database = open_file(file.path());
    database->execute(L"CREATE TABLE t (a)");
    database->execute(L"CREATE TABLE u (a)");
    database->execute(L"CREATE TRIGGER x AFTER INSERT ON t BEGIN DELETE FROM u; END");
    database->execute(L"CREATE VIEW v AS SELECT a FROM t");
    database->execute(L"INSERT INTO u VALUES (1)");
  }
  const auto database = open_file(file.path());
  database->execute_text(L"INSERT INTO t VALUES (1)", Trust::kWrite);
  const auto rows = database->query(L"SELECT count(*) FROM u");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->integer(0), 1);
  EXPECT_NE(failure_of([&] { database->execute_text(L"SELECT a FROM v", Trust::kRead); }).result,
            S_OK);
}

// --- What clients may do -------------------------------------------------------------------------

using Clients = WithDatabase;

TEST_F(Clients, CannotDoAnythingElse) {
  const auto before = file_.read();
  for (const auto* text :
       {L"DROP TABLE Forces", L"CREATE TABLE x (a)", L"ALTER TABLE Forces RENAME TO x",
        L"PRAGMA writable_schema = ON", L"PRAGMA user_version = 9", L"ATTACH 'c:\\x' AS x",
        L"VACUUM", L"SELECT load_extension('x')", L"SELECT randomblob(9)",
        L"INSERT INTO sqlite_master VALUES (1, 2, 3, 4, 5)", L"UPDATE orv_history SET Entry = 'x'",
        L"DELETE FROM ORV_History", L"SELECT * FROM pragma_user_version",
        L"WITH x AS (SELECT 1) DELETE FROM Forces", L"SELECT name FROM sqlite_master",
        L"WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c) SELECT n FROM c"}) {
    const auto failure = failure_of([&] {
      if (const auto query = database_->execute_text(text, Trust::kWrite).query) query->step();
    });
    EXPECT_NE(failure.result, S_OK) << text;
    EXPECT_FALSE(failure.sentence.empty()) << text;
  }
  EXPECT_EQ(file_.read(), before);
  EXPECT_THAT(failure_of([&] { write(L"DELETE FROM orv_history"); }).sentence,
              HasSubstr(L"would delete from the table orv_history"));
  EXPECT_THAT(failure_of([&] { write(L"SELECT * FROM pragma_table_info('Forces')"); }).sentence,
              HasSubstr(L"would use what SQLite keeps for itself"));
  EXPECT_THAT(failure_of([&] { write(L" -- nothing"); }).sentence,
              HasSubstr(L"holds no statement"));
  const auto call = failure_of([&] { write(L"SELECT randomblob(1)"); });
  EXPECT_EQ(call.result, kPermissionDenied);
  EXPECT_THAT(call.sentence, HasSubstr(L"would call the function randomblob"));
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

TEST_F(Clients, AreToldWhenThereIsNoMemoryToDecideWhatTheyMay) {
  int refused = 0;
  for (std::size_t allowed = 0;; ++allowed) {
    try {
      const LimitedMemory memory(allowed);
      database_->execute_text(L"DELETE FROM ForceLoadSets", Trust::kWrite);
      break;
    } catch (const std::bad_alloc&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
}

TEST_F(Clients, DoNotWaitForATextThatIsLongerThanAnyMayBe) {
  for (int i = 0; i < 10; ++i) write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  // Written out, the first one alone would take longer than a statement may.
  const auto rows = database_
                        ->execute_text(
                            L"SELECT count(*) FROM Forces A, Forces B WHERE length("
                            L"printf('%.*c', 2000000000 + A.ForceID, 'x')) IS NULL",
                            Trust::kRead)
                        .query;
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->integer(0), 100);
}

// --- Texts that are stored -----------------------------------------------------------------------

using Texts = WithDatabase;

TEST_F(Texts, AreKeptAsTheyAreOrRefused) {
  using namespace std::literals;
  const auto store = [&](std::wstring_view text) {
    database_->execute(L"UPDATE Forces SET Description = ?", text);
  };
  write(L"INSERT INTO Forces VALUES (1, 'a', 1)");
  for (const auto text : {L"Tr\xE4ger"sv, L"\xFEFFxyz"sv, L"a\xFEFF"sv, L"\xD83D\xDE00"sv,
                          L"a\0b"sv, L""sv, L"\xE000"sv}) {
    store(text);
    const auto rows = database_->query(L"SELECT Description FROM Forces");
    ASSERT_TRUE(rows->step());
    EXPECT_EQ(rows->text(0), text);
  }
  const std::wstring too_long(kMaximumLength + 1, L'x');
  const std::wstring too_many_bytes(kMaximumLength / 2 + 1, L'\xE4');
  for (const std::wstring_view text :
       {L"\xFFFExyz"sv, L"a\xFFFE"sv, L"a\xD83D"sv, L"\xDE00xyz"sv, std::wstring_view(too_long),
        std::wstring_view(too_many_bytes)}) {
    const auto failure = failure_of([&] { store(text); });
    EXPECT_EQ(failure.result, kInvalidArgument);
    EXPECT_THAT(failure.sentence, HasSubstr(L"The text " + quoted(text)));
  }
  EXPECT_EQ(failure_of([&] { write(L"SELECT '\xD83D' UNION SELECT 1"); }).result, kInvalidArgument);
}

// --- Statements that are shared ------------------------------------------------------------------

using Statements = WithDatabase;

TEST_F(Statements, OfTheSameTextCanRunAtTheSameTime) {
  for (int i = 1; i <= 3; ++i) database_->execute(L"INSERT INTO Forces (ForceID) VALUES (?)", i);
  int pairs = 0;
  const auto outer = database_->query(L"SELECT ForceID FROM Forces");
  while (pairs <= 9 && outer->step()) {
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

  ASSERT_TRUE(counts_memory);
  const auto memory_before = sqlite3_memory_used();
  ASSERT_GT(memory_before, 0);
  for (int i = 0; i < 200; ++i) {
    // Too long to be kept, and not.
    const std::wstring text(i % 2 == 0 ? 200'000 : 40'000, static_cast<wchar_t>(L'0' + i % 10));
    ASSERT_TRUE(database_->query(L"SELECT '" + std::to_wstring(i) + text + L"'")->step());
  }
  EXPECT_LT(sqlite3_memory_used() - memory_before, 5'000'000);
}

TEST_F(Statements, AreFoundAgainByNumberAndShapeAlsoWhenTheyWereForgotten) {
  const FixedText own(L"SELECT Magnitude FROM Forces WHERE ForceID = ?");
  write(L"INSERT INTO Forces VALUES (1, 'a', 10)");
  write(L"INSERT INTO Forces VALUES (2, 'b', 20)");
  const auto expect_found = [&](int id) {
    const auto by_number = database_->query(own, id);
    ASSERT_TRUE(by_number->step());
    EXPECT_EQ(by_number->real(0), 10 * id);
    const auto text = L"SELECT Magnitude FROM Forces WHERE ForceID = " + std::to_wstring(id);
    const auto by_shape = database_->execute_text(text, Trust::kRead).query;
    ASSERT_TRUE(by_shape->step());
    EXPECT_EQ(by_shape->real(0), 10 * id);
  };
  expect_found(1);
  expect_found(2);
  for (int i = 0; i < 2000; ++i) database_->query(L"SELECT " + std::to_wstring(i))->step();
  expect_found(1);

  write(L"DELETE FROM Forces WHERE ForceID = 1");
  const auto refused = failure_of(
      [&] { database_->execute_text(L"DELETE FROM Forces WHERE ForceID = 2", Trust::kRead); });
  EXPECT_EQ(refused.result, kPermissionDenied);
  expect_found(2);
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

  // Which occurrence of a table is meant cannot be told.
  const auto itself = database_->query(L"SELECT A.Magnitude FROM Forces A, Forces B");
  EXPECT_EQ(failure_of([&] { (void)itself->columns().find(L"B.Magnitude"); }).result,
            kItemNotFound);
  EXPECT_EQ(itself->columns().find(L"Magnitude"), 0);
}

// --- Transactions --------------------------------------------------------------------------------

using Transactions = WithDatabase;

TEST_F(Transactions, UndoOnlyThePieceThatFailed) {
  database_->transactions().begin();
  {
    Savepoint kept(*database_);
    {
      Savepoint undone_at_the_beginning(*database_);
      write(L"INSERT INTO Forces (Magnitude) VALUES (3)");
    }
    write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
    {
      Savepoint undone(*database_);
      write(L"INSERT INTO Forces (Magnitude) VALUES (2)");
    }
    kept.release();
  }
  {
    Savepoint undone(*database_);
    Savepoint kept_within(*database_);
    write(L"INSERT INTO Forces (Magnitude) VALUES (4)");
    kept_within.release();
  }
  database_->transactions().commit();
  const auto rows = database_->query(L"SELECT Magnitude FROM Forces");
  ASSERT_TRUE(rows->step());
  EXPECT_EQ(rows->real(0), 1);
  EXPECT_FALSE(rows->step());
}

TEST_F(Transactions, ThatTheDatabaseHadToUndoAreNotContinuedUnnoticed) {
  database_->transactions().begin();
  write(L"INSERT INTO Forces (Magnitude) VALUES (1)");
  // What SQLite does by itself when the disk is full, for example.
  database_->execute(L"ROLLBACK");
  EXPECT_EQ(failure_of([&] { write(L"INSERT INTO Forces (Magnitude) VALUES (2)"); }).result,
            kInvalidTransaction);
  EXPECT_EQ(failure_of([&] { database_->transactions().commit(); }).result, kInvalidTransaction);
  EXPECT_FALSE(database_->transactions().is_open());
  EXPECT_EQ(count(L"Forces"), 0);
}

// --- The end -------------------------------------------------------------------------------------

using Closing = WithDatabase;

TEST_F(Closing, LeavesStatementsThatOutliveTheDatabaseSafe) {
  auto held = database_->query(L"SELECT * FROM Forces");
  const auto second = database_->query(L"SELECT * FROM Forces");
  database_->close();
  database_.reset();
  database_ = open_file(file_.path());
  held = {};
  EXPECT_EQ(failure_of([&] { second->step(); }).result, kObjectClosed);
}

}  // namespace
}  // namespace modeldb
