#include "modeldb/engine/tokeniser.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
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

TEST(Tokeniser, SplitsAStatementIntoItsWords) {
  EXPECT_THAT(words(L"SELECT a.b,c FROM t\tWHERE(x>=-1.5e-3)"),
              ElementsAre(L"SELECT", L"a", L".", L"b", L",", L"c", L"FROM", L"t", L"WHERE", L"(",
                          L"x", L">=", L"-", L"1.5e-3", L")"));
  EXPECT_THAT(words(L"a||b<>c!=d==e<<f->>g"),
              ElementsAre(L"a", L"||", L"b", L"<>", L"c", L"!=", L"d", L"==", L"e", L"<<", L"f",
                          L"->>", L"g"));
  EXPECT_THAT(words(L"'Bob''s' '''' ''"), ElementsAre(L"'Bob''s'", L"''''", L"''"));
  EXPECT_THAT(words(L"a--'x\n/* ' */b--"), ElementsAre(L"a", L"b"));
  EXPECT_THAT(words(L"'--' '/*'"), ElementsAre(L"'--'", L"'/*'"));
}

TEST(Tokeniser, TellsWhatAWordIs) {
  using enum TokenKind;
  const std::pair<std::wstring_view, TokenKind> cases[] = {{L"'a'", kText},
                                                           {L"X'00ff'", kBlob},
                                                           {LR"("a ""b"" c")", kQuotedName},
                                                           {L"[a 'b]", kQuotedName},
                                                           {L"`a``b`", kQuotedName},
                                                           {L"St\u00fctze", kName},
                                                           {L"0", kNumber},
                                                           {L".5", kNumber},
                                                           {L"1.", kNumber},
                                                           {L"1.5E+3", kNumber},
                                                           {L"2e-308", kNumber},
                                                           {L"0x1F", kNumber},
                                                           {L"12ab", kInvalid},
                                                           {L"1e", kInvalid},
                                                           {L"\\", kInvalid},
                                                           {L"'it''s open", kInvalid},
                                                           {L"/* a", kInvalid},
                                                           {L"/*/", kInvalid},
                                                           {std::wstring_view(L"\0", 1), kInvalid}};
  for (const auto& [text, kind] : cases) {
    const Token token = Tokeniser(text).next();
    EXPECT_EQ(std::pair(token.text, token.kind), std::pair(text, kind));
  }
}

TEST(Tokeniser, SaysWhetherThereWereComments) {
  for (const auto& [text, has_comment] : {std::pair{L"a - - b / c", false}, {L"/**/a", true}}) {
    Tokeniser tokens(text);
    while (tokens.next().kind != TokenKind::kEnd) {
    }
    EXPECT_EQ(tokens.has_seen_comment(), has_comment) << text;
  }
}

}  // namespace
}  // namespace modeldb
