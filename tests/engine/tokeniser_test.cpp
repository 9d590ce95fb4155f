#include "modeldb/engine/tokeniser.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace modeldb {
namespace {

using testing::ElementsAre;

std::vector<std::wstring> words(std::wstring_view sql) {
  std::vector<std::wstring> result;
  Tokeniser tokens(sql);
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd; token = tokens.next()) {
    result.emplace_back(token.text);
  }
  return result;
}

TokenKind kind_of(std::wstring_view sql) { return Tokeniser(sql).next().kind; }

TEST(Tokeniser, SplitsAStatementIntoItsWords) {
  EXPECT_THAT(words(L"SELECT a.b,c FROM t\tWHERE(x>=-1.5e-3)"),
              ElementsAre(L"SELECT", L"a", L".", L"b", L",", L"c", L"FROM", L"t", L"WHERE", L"(",
                          L"x", L">=", L"-", L"1.5e-3", L")"));
  EXPECT_THAT(words(L"a||b<>c!=d==e<<f->>g"),
              ElementsAre(L"a", L"||", L"b", L"<>", L"c", L"!=", L"d", L"==", L"e", L"<<", L"f",
                          L"->>", L"g"));
}

TEST(Tokeniser, KeepsQuotesInsideATextAndEndsItAtTheLast) {
  EXPECT_THAT(words(L"'Bob''s' 'x'"), ElementsAre(L"'Bob''s'", L"'x'"));
  EXPECT_THAT(words(L"'''' ''"), ElementsAre(L"''''", L"''"));
  EXPECT_EQ(kind_of(L"'it''s open"), TokenKind::kInvalid);
}

TEST(Tokeniser, TellsQuotedNamesFromTexts) {
  EXPECT_EQ(kind_of(LR"("a ""b"" c")"), TokenKind::kQuotedName);
  EXPECT_EQ(kind_of(L"[a 'b]"), TokenKind::kQuotedName);
  EXPECT_EQ(kind_of(L"`a``b`"), TokenKind::kQuotedName);
  EXPECT_EQ(kind_of(L"'a'"), TokenKind::kText);
  EXPECT_EQ(kind_of(L"X'00ff'"), TokenKind::kBlob);
}

TEST(Tokeniser, KnowsWhereANumberEnds) {
  for (const auto* number :
       {L"0", L"17", L"1.5", L".5", L"1.", L"1e10", L"1.5E+3", L"2e-308", L"0x1F"}) {
    EXPECT_THAT(words(std::wstring(number) + L" "), ElementsAre(number));
    EXPECT_EQ(kind_of(number), TokenKind::kNumber) << number;
  }
  EXPECT_EQ(kind_of(L"12ab"), TokenKind::kInvalid);
  EXPECT_EQ(kind_of(L"1e"), TokenKind::kInvalid);
}

TEST(Tokeniser, PassesOverCommentsAndSaysThatThereWereSome) {
  Tokeniser none(L"a - - b / c");
  for (int i = 0; i < 6; ++i) none.next();
  EXPECT_FALSE(none.has_seen_comment());

  EXPECT_THAT(words(L"a--'x\n/* ' */b--"), ElementsAre(L"a", L"b"));
  EXPECT_THAT(words(L"'--' '/*'"), ElementsAre(L"'--'", L"'/*'"));
  Tokeniser some(L"/**/a");
  some.next();
  EXPECT_TRUE(some.has_seen_comment());
}

TEST(Tokeniser, TakesACommentWithoutItsEndForNothingThatSqlKnows) {
  EXPECT_EQ(kind_of(L"/* a"), TokenKind::kInvalid);
  EXPECT_EQ(kind_of(L"/*/"), TokenKind::kInvalid);
}

TEST(Tokeniser, StopsAtCharactersThatSqlDoesNotKnow) {
  EXPECT_EQ(kind_of(std::wstring_view(L"\0", 1)), TokenKind::kInvalid);
  EXPECT_EQ(kind_of(L"\\"), TokenKind::kInvalid);
  EXPECT_EQ(kind_of(L"Stütze"), TokenKind::kName);
}

}  // namespace
}  // namespace modeldb
