// The texts of a row: how values are written, and where the vertex's number comes from.

#include <gmock/gmock.h>

#include <clocale>
#include <limits>

#include "tests/host/server.h"

namespace {

using server::sql;
using ::testing::StartsWith;

class SqlTextTest : public server::Test {
 protected:
  void SetUp() override { charge_ = server::make<NodalCharge, INodalCharge>(); }

  com::Ptr<INodalCharge> charge_;
};

TEST_F(SqlTextTest, DoublesComeBackExactly) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const struct {
    double value;
    const char* text;
  } cases[] = {
      {0.1, "0.10000000000000001"},
      {1e22, "1e+22"},
      {1e16, "10000000000000000"},
      {123456789012345678.0, "1.2345678901234568e+17"},
      {1e-5, "1.0000000000000001e-05"},
      {5e-324, "4.9406564584124654e-324"},
      {1.7976931348623157e308, "1.7976931348623157e+308"},
      {-0.0, "-0"},
      {kInfinity, "inf"},
      {-kInfinity, "-inf"},
  };
  for (const auto& [value, text] : cases) {
    charge_->put_Magnitude(value);
    EXPECT_EQ(sql(charge_, 4), "'', 0, " + std::string(text));
  }
}

TEST_F(SqlTextTest, DecimalPointIsAPointInEveryLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  ASSERT_TRUE(std::setlocale(LC_ALL, "German_Germany.1252"));
  charge_->put_Magnitude(2.5);
  EXPECT_EQ(sql(charge_, 6), "Description = '', VertexID = 0, Magnitude = 2.5");
  std::setlocale(LC_ALL, before.c_str());
}

TEST_F(SqlTextTest, DescriptionMayHaveApostrophesAndAnyLength) {
  for (const std::string& text : {std::string("Bob's ''load"), std::string(100'000, 'x')}) {
    charge_->put_Description(com::Bstr(std::wstring(text.begin(), text.end())).get());
    charge_->FileOpHelper(host.database.get(), 2, server::no(), server::no());
    for (const long piece : {4, 5}) EXPECT_EQ(sql(charge_, piece), "'" + text + "', 0, 0");
    for (const long piece : {6, 7}) {
      EXPECT_THAT(sql(charge_, piece), StartsWith("Description = '" + text + "', VertexID"));
    }
  }
}

TEST_F(SqlTextTest, CurrentTextsAskTheVertexForItsNumberEachTime) {
  com::Ptr<IDispatch> vertex;
  charge_->get_Vertex(vertex.put());
  vertex.query<IVertex>()->put_ID(LONG_MIN);
  host.journal.clear();
  EXPECT_EQ(sql(charge_, 4), "'', -2147483648, 0");
  EXPECT_EQ(sql(charge_, 6), "Description = '', VertexID = -2147483648, Magnitude = 0");
  EXPECT_EQ(host.journal.lines(), fake::Journal::Lines({"Vertex.ID", "Vertex.ID"}));
  EXPECT_EQ(sql(charge_, 5), "'', 0, 0");
  EXPECT_EQ(host.journal.lines().size(), 2U);

  host.journal.fail("Vertex.ID", E_ABORT, L"The node is gone.");
  EXPECT_EQ(sql(charge_, 4), "0x80004004");
  EXPECT_EQ(fake::take_error_words(), "The node is gone.");
}

}  // namespace
