#include "modeldb/engine/client_text.h"

#include <gmock/gmock.h>

#include <optional>
#include <vector>

#include "modeldb/base/failure.h"
#include "modeldb/engine/text_shape.h"
#include "tests/engine/support.h"

namespace modeldb {
namespace {

using testing::IsEmpty;

Literal integer(std::int64_t value) { return value; }
Literal text(std::wstring_view value) { return value; }

ReadText read(std::wstring_view sql) {
  ReadText result;
  read_client_text(sql, result);
  return result;
}

TEST(ClientText, BindsValuesAssignmentsAndWhatAConditionCompares) {
  struct {
    const wchar_t* sql;
    const wchar_t* bound;
    std::vector<Literal> values;
  } const cases[] = {
      {L"INSERT INTO t (a, b, c) VALUES (3, -1.5e3, 'Tip load')",
       L"INSERT INTO t (a, b, c) VALUES (?, ?, ?)",
       {integer(3), -1500.0, text(L"Tip load")}},
      {L"INSERT INTO t VALUES ('Bob''s', 'b')",
       L"INSERT INTO t VALUES ('Bob''s', ?)",
       {text(L"b")}},
      {L"INSERT INTO t VALUES (-9223372036854775808, 9223372036854775807)",
       L"INSERT INTO t VALUES (?, ?)",
       {integer(INT64_MIN), integer(INT64_MAX)}},
      {L"SELECT a FROM t JOIN u ON t.b = u.b WHERE (t.a=17 OR c <= -.5) AND d<>'x'",
       L"SELECT a FROM t JOIN u ON t.b = u.b WHERE (t.a=? OR c <= ?) AND d<>?",
       {integer(17), -0.5, text(L"x")}},
      {L"DELETE FROM t WHERE a = 5;", L"DELETE FROM t WHERE a = ?;", {integer(5)}},
      {L"update t set a = 1, b = c + 2, d = 'x' where a = +2",
       L"update t set a = ?, b = c + 2, d = ? where a = ?",
       {integer(1), text(L"x"), integer(2)}},
  };
  for (const auto& [sql, bound, values] : cases) {
    const ReadText result = read(sql);
    EXPECT_EQ(result.text, bound);
    EXPECT_EQ(result.values, values) << sql;
  }
}

TEST(ClientText, KeepsLiteralsWhoseMeaningDependsOnBeingLiterals) {
  for (const wchar_t* const sql :
       {L"SELECT a = 1, 2 FROM t ORDER BY 1 LIMIT 5",
        L"SELECT a FROM t GROUP BY a = 1 HAVING count(*) > 2",
        L"SELECT a FROM t WHERE a BETWEEN 1 AND 2 ORDER BY b = 3",
        L"SELECT a FROM t WHERE a LIKE 'x%' ESCAPE '!' AND b IN (1, 2)",
        L"SELECT a FROM t WHERE a = 'x' COLLATE NOCASE", L"SELECT a FROM t WHERE a = b - 1",
        L"INSERT INTO t VALUES (NULL, 1 + 2, abs(-3), x'00', CAST(1 AS TEXT))",
        // Another query or row in the text.
        L"SELECT a FROM t WHERE a = 1 UNION SELECT b FROM t WHERE b = 1",
        L"DELETE FROM t WHERE a = 1 AND b IN (SELECT c FROM u WHERE d = 2)",
        L"INSERT INTO t VALUES (1), (2)", L"INSERT INTO t VALUES (1) ON CONFLICT DO NOTHING",
        // No type holds these numbers.
        L"INSERT INTO t VALUES (9223372036854775808, 1e999, 0x10)"}) {
    const ReadText result = read(sql);
    EXPECT_EQ(result.text, sql);
    EXPECT_THAT(result.values, IsEmpty());
  }
}

TEST(ClientText, KnowsTransactionsAndNothingMoreAboutThem) {
  ReadText ignored;
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
  // A comment in a query does no harm.
  EXPECT_EQ(failure_of([] { read(L"SELECT a -- all\nFROM t"); }).result, S_OK);
}

TEST(ClientText, ARefusalNamesTheTextAndWhatToDo) {
  const auto failure = failure_of([] { read(L"SELECT 1; DELETE FROM t"); });
  EXPECT_EQ(failure.sentence,
            L"The text \"SELECT 1; DELETE FROM t\" was refused: it holds more than "
            L"one statement. Execute them one by one.");
}

std::optional<TextShape> shape_of(std::wstring_view sql) {
  ReadText out;
  const TextKind kind = read_client_text(sql, out);
  return TextShape::of(sql, kind, out);
}

TEST(TextShape, IsThatOfTextsWhichDifferInWholeNumbersAlone) {
  const auto shape = shape_of(L"DELETE FROM t WHERE a = 5 AND b = 70");
  ASSERT_TRUE(shape);
  std::vector<Literal> values;
  constexpr auto* kSame = L"DELETE FROM t WHERE a = 123456789012345678 AND b = 007";
  EXPECT_TRUE(shape->matches(kSame, values));
  EXPECT_EQ(values, (std::vector<Literal>{integer(123456789012345678), integer(7)}));
  const ReadText same = read(kSame);
  EXPECT_EQ(shape->sql(), same.text);
  EXPECT_EQ(values, same.values);

  for (const auto* sql :
       {L"DELETE FROM t WHERE a = 5 AND b = 70;", L"DELETE FROM t WHERE a = 5 AND b = 70 OR 1",
        L"DELETE FROM t WHERE a = 5 AND b = 70--", L"DELETE FROM t WHERE a = 5 AND b = ",
        L"DELETE FROM t WHERE a = 5 AND b = -7", L"DELETE FROM t WHERE a = 5 AND b = 7.5",
        L"DELETE FROM t WHERE a = 5 AND b = 7e1", L"DELETE FROM t WHERE a = 5 AND b = 0x7",
        L"DELETE FROM t WHERE a = 5 AND b = 7a", L"DELETE FROM t WHERE a = 5 AND b = '7'",
        L"DELETE FROM t WHERE a = 5 AND b = \uFF17", L"DELETE FROM t WHERE a = 5 OR  b = 7",
        L"DELETE FROM t WHERE a = 5", L"delete from t where a = 5 and b = 70",
        L"DELETE FROM u WHERE a = 5 AND b = 70", L"",
        L"DELETE FROM t WHERE a = 5 AND b = 9223372036854775808"}) {
    EXPECT_FALSE(shape->matches(sql, values)) << sql;
  }
}

TEST(TextShape, IsOfNoTextWithOtherValues) {
  for (const auto* sql : {L"DELETE FROM t WHERE a = 'x'", L"DELETE FROM t WHERE a = -1",
                          L"DELETE FROM t WHERE a = 1.5", L"INSERT INTO t VALUES (1, .5)"}) {
    EXPECT_FALSE(shape_of(sql)) << sql;
  }
  // A number that stays in the text is a part of the shape.
  const auto shape = shape_of(L"SELECT a FROM t WHERE b = 1 ORDER BY 1");
  std::vector<Literal> values;
  EXPECT_TRUE(shape->matches(L"SELECT a FROM t WHERE b = 2 ORDER BY 1", values));
  EXPECT_FALSE(shape->matches(L"SELECT a FROM t WHERE b = 2 ORDER BY 2", values));
}

}  // namespace
}  // namespace modeldb
