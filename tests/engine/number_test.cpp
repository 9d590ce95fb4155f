#include "modeldb/engine/number.h"

#include <gmock/gmock.h>

namespace modeldb {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The number that a text begins with, and what is left of the text.
struct Taken {
  std::vector<Literal> values;
  std::wstring_view rest;
};

Taken take(std::wstring_view text) {
  Taken taken{.values = {}, .rest = text};
  if (!take_plain_number(taken.rest, taken.values)) taken.values.clear();
  return taken;
}

TEST(NumberTest, PlainNumberIsTakenUpToTheComma) {
  EXPECT_THAT(take(L"12, 3").values, ElementsAre(Literal(std::int64_t{12})));
  EXPECT_EQ(take(L"12, 3").rest, L", 3");
  EXPECT_THAT(take(L"-9223372036854775808").values, ElementsAre(Literal(INT64_MIN)));
  EXPECT_THAT(take(L"-0.10000000000000001,").values, ElementsAre(Literal(-0.1)));
  EXPECT_THAT(take(L"1e+300").values, ElementsAre(Literal(1e300)));
}

TEST(NumberTest, WhatIsNoPlainNumberIsLeftWhole) {
  const std::wstring long_one(100, L'1');
  for (const std::wstring_view text :
       {L"", L",1", L"-", L"nan", L"inf", L"-inf", L".5", L"+1", L"0x10", L"1 OR 1", L"1;", L"1--",
        L"9223372036854775808", L"1e999", L"1.5.5", L"\xFF11", L"1\x0131", long_one.c_str()}) {
    EXPECT_THAT(take(text).values, IsEmpty());
    EXPECT_EQ(take(text).rest, text);
  }
}

TEST(NumberTest, WholeNumbersAreBoundAsIntegersAsFarAsTheyAreExact) {
  EXPECT_EQ(literal_of(-3), Literal(std::int64_t{-3}));
  EXPECT_EQ(literal_of(9007199254740991.0), Literal(std::int64_t{9007199254740991}));
  EXPECT_EQ(literal_of(9007199254740992.0), Literal(9007199254740992.0));
  EXPECT_EQ(literal_of(0.5), Literal(0.5));
}

}  // namespace
}  // namespace modeldb
