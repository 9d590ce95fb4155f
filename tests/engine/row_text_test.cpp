#include "modeldb/engine/row_text.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "modeldb/engine/failure.h"
#include "records/text.h"
#include "tests/engine/support.h"

namespace modeldb {
namespace {

using testing::ElementsAre;

BoundText values(std::wstring_view text, std::wstring_view description) {
  BoundText out;
  append_values(text, description, out);
  return out;
}

BoundText assignments(std::wstring_view text, std::wstring_view description) {
  BoundText out;
  append_assignments(text, description, out);
  return out;
}

TEST(RowText, TakesTheDescriptionAndTheNumbersApart) {
  const auto row = values(L"'Tip load', 12 , -0.5", L"Tip load");
  EXPECT_EQ(row.text, L"?, ?, ?");
  EXPECT_THAT(row.values,
              ElementsAre(Literal(L"Tip load"), Literal(std::int64_t{12}), Literal(-0.5)));

  const auto update = assignments(L"Description = 'a', VertexID = 3, Magnitude = 1e22", L"a");
  EXPECT_EQ(update.text, L"Description = ?, VertexID = ?, Magnitude = ?");
  EXPECT_THAT(update.values, ElementsAre(Literal(L"a"), Literal(std::int64_t{3}), Literal(1e22)));
}

TEST(RowText, LetsADescriptionHoldAnything) {
  for (const std::wstring description : {L"", L"Bob's load", L"'", L"', 1, 2); DROP TABLE t; --",
                                         L"'||(SELECT 1)||'", L"a = 'b', "}) {
    const auto row = values(L"'" + description + L"', 1", description);
    EXPECT_EQ(row.text, L"?, ?");
    EXPECT_THAT(row.values,
                ElementsAre(Literal(std::wstring_view(description)), Literal(std::int64_t{1})));
    const auto update = assignments(L"D = '" + description + L"', V = 1", description);
    EXPECT_EQ(update.text, L"D = ?, V = ?");
  }
}

TEST(RowText, RefusesWhatIsNeitherTheDescriptionNorNumbers) {
  for (const auto* text : {L"'other', 1", L"'a', 1), (2", L"'a', (SELECT 1)", L"'a', 1 -- ",
                           L"'a', 1; DELETE FROM t", L"'a', 'b'", L"'a', 1) ON CONFLICT DO NOTHING",
                           L"'a', 1) RETURNING (1", L"'a', inf", L"'a', --1\n2", L"'a', 1/*x*/, 2",
                           L"'a' || 'b'", L"'a', NULL", L"'a',", L"'a', 1e999", L""}) {
    EXPECT_EQ(failure_of([&] { values(text, L"a"); }).result, kInvalidArgument) << text;
  }
  for (const auto* text :
       {L"D = 'a', V = 1 WHERE 1", L"D = 'a', V = W", L"D = 'a', V == 1", L"D = 'a', V = 1 -- ",
        L"D = 'a', \"V\" = 1", L"D /**/ = 'a'", L"D = a"}) {
    EXPECT_EQ(failure_of([&] { assignments(text, L"a"); }).result, kInvalidArgument) << text;
  }
}

TEST(RowText, KeepsEveryBitOfADouble) {
  using Limits = std::numeric_limits<double>;
  for (const double number :
       {0.1, -0.1, 1.0 / 3, 5e-324, Limits::min(), Limits::max(), 1e22, 123456789.123456789,
        std::nextafter(1.0, 2), -0.5, 2251799813685249.5}) {
    orv::Text text;
    text << L"'', " << number;
    EXPECT_THAT(values(text.view(), L"").values, ElementsAre(Literal(L""), Literal(number)));
  }
}

}  // namespace
}  // namespace modeldb
