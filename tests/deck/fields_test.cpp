#include "tools/deck/fields.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>

namespace {

using deck::Reading;

struct Case {
  const char* field;
  Reading reading;
  double value;
};

TEST(Fields, NumbersAreThoseThatTheSolverReads) {
  const Case cases[] = {
      {"", Reading::kNumber, 0},
      {"5", Reading::kNumber, 5},
      {".5", Reading::kNumber, .5},
      {"-5.", Reading::kNumber, -5},
      {"+1.5E-3", Reading::kNumber, 1.5e-3},
      {"1.5D1", Reading::kNumber, 15},
      {"1.5+1", Reading::kNumber, 15},
      {"-.1234567890123457-4", Reading::kNumber, -.1234567890123457e-4},
      {"12345678901234567-4", Reading::kNumber, 12345678901234567e-4},
      {"1.0000000000000000000000", Reading::kNumber, 1},
      {"1E-400", Reading::kNumber, 0},
      {"-1234567890123456.-10", Reading::kCut, -1234567890123456.e-1},
      {"1234567890123456789012.5", Reading::kCut, 12345678901234567890.},
      {"1E400", Reading::kNotFinite, 0},
      {"INF", Reading::kNotFinite, 0},
      {"-NAN", Reading::kNotFinite, 0},
      {"0X10", Reading::kNoNumber, 0},
      {"1.0.0", Reading::kNoNumber, 0},
      {"1.E", Reading::kNoNumber, 0},
      {".", Reading::kNoNumber, 0},
      {"-", Reading::kNoNumber, 0},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.field);
    double value = -1;
    EXPECT_EQ(each.reading, deck::read_number(each.field, value));
    if (each.reading == Reading::kNumber || each.reading == Reading::kCut) {
      EXPECT_EQ(each.value, value);
    }
  }
  EXPECT_FALSE(deck::whole_number("00000000007")) << "the solver reads ten characters, node 0";
  EXPECT_FALSE(deck::whole_number("7."));
  EXPECT_EQ(7, deck::whole_number("+7"));
}

TEST(Fields, WrittenNumbersHaveTwentyCharactersAndAreTheNearest) {
  std::mt19937_64 random(5);
  int inexact = 0;
  for (int i = 0; i < 100000; ++i) {
    std::uint64_t bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    const deck::NumberText text = deck::number_text(value);
    ASSERT_LE(text.text.size(), deck::kNumberWidth) << text.text;
    double read = 0;
    ASSERT_EQ(Reading::kNumber, deck::read_number(text.text, read)) << text.text;
    ASSERT_EQ(text.is_exact, read == value) << text.text;
    if (std::abs(value) > 1e-290) {
      ASSERT_LE(std::abs(read - value), 6e-15 * std::abs(value)) << text.text;
    }
    inexact += text.is_exact ? 0 : 1;
  }
  EXPECT_GT(inexact, 0);
  for (int i = 0; i < 100000; ++i) {
    const double value = 1.5 * (static_cast<double>(random() % 2000000) - 1000000) / 1000;
    ASSERT_TRUE(deck::number_text(value).is_exact) << value;
  }
  EXPECT_EQ("0.75", deck::number_text(.75).text);
  EXPECT_EQ("-0.1234567890123457", deck::number_text(-.1234567890123457).text);
}

}  // namespace
