#include "modeldb/engine/client_text.h"

#include <gmock/gmock.h>

#include "modeldb/engine/failure.h"
#include "tests/engine/support.h"

namespace modeldb {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Literal integer(std::int64_t value) { return value; }
Literal text(std::wstring_view value) { return value; }

BoundText read(std::wstring_view sql) {
  BoundText result;
  read_client_text(sql, result);
  return result;
}

void expect_unchanged(std::wstring_view sql) {
  const BoundText result = read(sql);
  EXPECT_EQ(result.text, sql);
  EXPECT_THAT(result.values, IsEmpty());
}

TEST(ClientText, BindsTheValuesOfAnInsertedRow) {
  const auto row = read(L"INSERT INTO t (a, b, c) VALUES (3, -1.5e3, 'Tip load')");
  EXPECT_EQ(row.text, L"INSERT INTO t (a, b, c) VALUES (?, ?, ?)");
  EXPECT_THAT(row.values, ElementsAre(integer(3), Literal(-1500.0), text(L"Tip load")));
}

TEST(ClientText, BindsWhatAConditionCompares) {
  const auto query =
      read(L"SELECT a FROM t JOIN u ON t.b = u.b WHERE (t.a=17 OR c <= -.5) AND d<>'x'");
  EXPECT_EQ(query.text, L"SELECT a FROM t JOIN u ON t.b = u.b WHERE (t.a=? OR c <= ?) AND d<>?");
  EXPECT_THAT(query.values, ElementsAre(integer(17), Literal(-0.5), text(L"x")));

  EXPECT_EQ(read(L"DELETE FROM t WHERE a = 5;").text, L"DELETE FROM t WHERE a = ?;");
}

TEST(ClientText, BindsAssignmentsAndTheConditionAfterThem) {
  const auto update = read(L"update t set a = 1, b = c + 2, d = 'x' where a = +2");
  EXPECT_EQ(update.text, L"update t set a = ?, b = c + 2, d = ? where a = ?");
  EXPECT_THAT(update.values, ElementsAre(integer(1), text(L"x"), integer(2)));
}

TEST(ClientText, KeepsLiteralsWhoseMeaningDependsOnBeingLiterals) {
  expect_unchanged(L"SELECT a = 1, 2 FROM t ORDER BY 1 LIMIT 5");
  expect_unchanged(L"SELECT a FROM t GROUP BY a = 1 HAVING count(*) > 2");
  expect_unchanged(L"SELECT a FROM t WHERE a BETWEEN 1 AND 2 ORDER BY b = 3");
  expect_unchanged(L"SELECT a FROM t WHERE a LIKE 'x%' ESCAPE '!' AND b IN (1, 2)");
  expect_unchanged(L"SELECT a FROM t WHERE a = 'x' COLLATE NOCASE");
  expect_unchanged(L"SELECT a FROM t WHERE a = b - 1");
  expect_unchanged(L"INSERT INTO t VALUES (NULL, 1 + 2, abs(-3), x'00', CAST(1 AS TEXT))");
}

TEST(ClientText, BindsNothingWhereAnotherQueryOrRowIsInTheText) {
  expect_unchanged(L"SELECT a FROM t WHERE a = 1 UNION SELECT b FROM t WHERE b = 1");
  expect_unchanged(L"DELETE FROM t WHERE a = 1 AND b IN (SELECT c FROM u WHERE d = 2)");
  expect_unchanged(L"INSERT INTO t VALUES (1), (2)");
  expect_unchanged(L"INSERT INTO t VALUES (1) ON CONFLICT DO NOTHING");
}

TEST(ClientText, LeavesNumbersAloneThatNoTypeHolds) {
  expect_unchanged(L"INSERT INTO t VALUES (9223372036854775808, 1e999, 0x10)");
  const auto limits = read(L"INSERT INTO t VALUES (-9223372036854775808, 9223372036854775807)");
  EXPECT_THAT(limits.values, ElementsAre(integer(INT64_MIN), integer(INT64_MAX)));
}

TEST(ClientText, LeavesTextsWithQuotesInside) {
  const auto row = read(L"INSERT INTO t VALUES ('Bob''s', 'b')");
  EXPECT_EQ(row.text, L"INSERT INTO t VALUES ('Bob''s', ?)");
  EXPECT_THAT(row.values, ElementsAre(text(L"b")));
}

TEST(ClientText, KnowsTransactionsAndNothingMoreAboutThem) {
  BoundText ignored;
  EXPECT_EQ(read_client_text(L"begin transaction", ignored), TextKind::kBegin);
  EXPECT_EQ(read_client_text(L"COMMIT;", ignored), TextKind::kCommit);
  EXPECT_EQ(read_client_text(L"Rollback Transaction", ignored), TextKind::kRollback);
  for (const auto* sql : {L"BEGIN EXCLUSIVE", L"ROLLBACK TO work", L"COMMIT AND CHAIN"}) {
    EXPECT_EQ(failure_of([&] { read(sql); }).result, kErrorsInCommand) << sql;
  }
}

TEST(ClientText, RefusesWhatIsNoSingleLegibleStatement) {
  for (const auto* sql : {L"SELECT 1; DELETE FROM t", L"INSERT INTO t VALUES (1); --",
                          L"DELETE FROM t -- WHERE a = 1", L"UPDATE t SET a = 1 /* all */",
                          L"INSERT INTO t VALUES (1) RETURNING a", L"DROP TABLE t",
                          L"PRAGMA journal_mode = OFF", L"ATTACH 'x' AS x", L"EXPLAIN SELECT 1",
                          L"REPLACE INTO t VALUES (1)", L"SAVEPOINT a", L"", L";"}) {
    EXPECT_EQ(failure_of([&] { read(sql); }).result, kPermissionDenied) << sql;
  }
  for (const auto* sql : {L"SELECT ?", L"SELECT :a", L"SELECT 'a", L"SELECT 1 /* a"}) {
    EXPECT_EQ(failure_of([&] { read(sql); }).result, kErrorsInCommand) << sql;
  }
}

TEST(ClientText, AllowsCommentsInAQuery) {
  EXPECT_EQ(failure_of([] { read(L"SELECT a -- all\nFROM t"); }).result, S_OK);
}

TEST(ClientText, ARefusalNamesTheTextAndWhatToDo) {
  const auto failure = failure_of([] { read(L"SELECT 1; DELETE FROM t"); });
  EXPECT_EQ(failure.sentence,
            L"The text \"SELECT 1; DELETE FROM t\" was refused: it holds more than "
            L"one statement. Execute them one by one.");
}

}  // namespace
}  // namespace modeldb
