// Every kind against what is expected of it.

#include <gmock/gmock.h>

#include <regex>

#include "com/bstr.h"
#include "tests/host/server.h"
#include "tests/kinds/kind.h"

namespace {

using com::Bstr;
using com::Variant;
using server::dirty;
using server::sql;
using ::testing::HasSubstr;

bool is_flag(Held held) {
  return held == Held::kFlag || held == Held::kWideFlag || held == Held::kRawFlag;
}

std::wstring wide(const std::string& text) { return {text.begin(), text.end()}; }

class KindTest : public server::Test, public ::testing::WithParamInterface<Kind> {
 protected:
  void SetUp() override { record_ = make(); }

  const ExpectedKind& expected() const { return GetParam().expected; }
  const std::vector<ExpectedColumn>& columns() const { return expected().columns; }
  [[nodiscard]] com::Ptr<IPersistentObject> make() const {
    const Class& record = GetParam().record;
    return server::as_record(server::make(record.clsid).get(), record.own_interface);
  }

  /// The value of a column's own, as the expected texts have it.
  [[nodiscard]] Variant value_of(std::size_t column) const {
    const long number = static_cast<long>(column) + 1;
    return columns()[column].held == Held::kDouble ? Variant(number + 0.5) : Variant(number);
  }
  /// A row in which every column of the kind has a value of its own.
  [[nodiscard]] fake::Row row() const {
    fake::Row row{{wide(expected().record) + L"ID", Variant(77)},
                  {L"Description", Variant(Bstr(L"Tip load"))},
                  {L"VertexID", Variant(12)}};
    for (std::size_t i = 0; i < columns().size(); ++i) row[wide(columns()[i].name)] = value_of(i);
    return row;
  }
  HRESULT load(const fake::Row& row) { return server::Test::load(*record_, row); }

  HRESULT put(const ExpectedColumn& column, const Variant& value) {
    VARIANT typed = value;
    if (is_flag(column.held)) {
      typed.vt = VT_BOOL;
      typed.boolVal = static_cast<VARIANT_BOOL>(value.get().lVal);
    }
    return server::LateBound(record_).put(wide(column.property).c_str(), typed);
  }
  /// The property gives back what it holds of `number`: all of it, or what remains in 16 bits.
  void expect_held(const ExpectedColumn& column, long number) {
    const auto outcome = server::LateBound(record_).call(wide(column.property).c_str());
    EXPECT_EQ(outcome.result, S_OK);
    const VARIANT& value = outcome.value.get();
    const auto low_bits = static_cast<std::int16_t>(number);
    switch (column.held) {
      case Held::kDouble:
        EXPECT_EQ(value.dblVal, number * kHuge);
        break;
      case Held::kLong:
        EXPECT_EQ(value.lVal, number);
        break;
      case Held::kShort:
        EXPECT_EQ(value.lVal, low_bits);
        break;
      case Held::kRawFlag:
        EXPECT_EQ(value.boolVal, low_bits);
        break;
      case Held::kFlag:
        EXPECT_EQ(value.boolVal, low_bits ? VARIANT_TRUE : VARIANT_FALSE);
        break;
      case Held::kWideFlag:
        EXPECT_EQ(value.boolVal, number ? VARIANT_TRUE : VARIANT_FALSE);
    }
  }

  static constexpr double kHuge = 0x1p900;
  com::Ptr<IPersistentObject> record_;
};

INSTANTIATE_TEST_SUITE_P(All, KindTest, ::testing::ValuesIn(all_kinds()),
                         ::testing::PrintToStringParamName());

TEST_P(KindTest, NamesEventCodeAndDefaultsAreTheHosts) {
  EXPECT_EQ(sql(record_, 1), expected().collection);
  EXPECT_EQ(sql(record_, 2), expected().record + "ID");
  std::string names = "Description, VertexID";
  for (const ExpectedColumn& column : columns()) names += ", " + column.name;
  EXPECT_EQ(sql(record_, 3), names);
  EXPECT_EQ(sql(record_, 4), "'', 0, " + expected().defaults);
  EXPECT_EQ(sql(record_, 5), "'', 0, " + expected().defaults);
  long event = 0;
  EXPECT_EQ(record_->get_EventObjectType(&event), S_OK);
  EXPECT_EQ(event, expected().record_event);
}

TEST_P(KindTest, RowIsLoadedAsCurrentAndSaved) {
  record_->put_IsDirty(1);
  EXPECT_EQ(load(row()), S_OK);
  for (const long piece : {4, 5}) EXPECT_EQ(sql(record_, piece), expected().values());
  for (const long piece : {6, 7}) EXPECT_EQ(sql(record_, piece), expected().assignments());
  long id = 0;
  record_->get_ID(&id);
  EXPECT_EQ(id, 77);
  EXPECT_EQ(dirty(record_), 0);
}

TEST_P(KindTest, PropertiesReachTheirColumnsAndTheSavedImageWaitsForTheCommit) {
  for (std::size_t i = 0; i < columns().size(); ++i) {
    record_->put_IsDirty(0);
    EXPECT_EQ(put(columns()[i], value_of(i)), S_OK);
    EXPECT_EQ(dirty(record_), 1);
  }
  record_->put_Description(Bstr(L"Tip load").get());
  const Variant vertex = server::LateBound(record_).get(L"Vertex");
  com::Ptr<IDispatch>(vertex.get().pdispVal).query<IVertex>()->put_ID(12);
  EXPECT_EQ(sql(record_, 4), expected().values());
  EXPECT_EQ(sql(record_, 6), expected().assignments());
  EXPECT_EQ(sql(record_, 5), "'', 0, " + expected().defaults);

  constexpr long kBeforeSave = 1;
  constexpr long kAfterSave = 2;
  for (const long operation : {kBeforeSave, kAfterSave}) {
    EXPECT_EQ(record_->FileOpHelper(host.database.get(), operation, server::no(), server::no()),
              S_OK);
  }
  EXPECT_EQ(sql(record_, 5), expected().values());
  EXPECT_EQ(sql(record_, 7), expected().assignments());
}

TEST_P(KindTest, PropertiesTakeAnyValueAndGiveItBack) {
  for (const ExpectedColumn& column : columns()) {
    for (const long number : {-1L, 0L, 1L, 2L, 7L, 32767L, LONG_MIN, LONG_MAX, 65537L}) {
      SCOPED_TRACE(column.property + " = " + std::to_string(number));
      // A truth value has 16 bits.
      if (is_flag(column.held) && static_cast<std::int16_t>(number) != number) continue;
      record_->put_IsDirty(0);
      put(column, column.held == Held::kDouble ? Variant(number * kHuge) : Variant(number));
      EXPECT_EQ(dirty(record_), 1);
      expect_held(column, number);
    }
  }
}

TEST_P(KindTest, LoadedFlagsAreKeptInTheirWidthAndWrittenAsTheNumberHeld) {
  for (const ExpectedColumn& column : columns()) {
    if (column.held == Held::kDouble || column.held == Held::kLong) continue;
    for (const long number : {1L, 2L, 40000L, 65536L}) {
      fake::Row changed = row();
      changed[wide(column.name)] = Variant(number);
      ASSERT_EQ(load(changed), S_OK);
      const auto low_bits = static_cast<std::int16_t>(number);
      const long kept = column.held == Held::kWideFlag ? number : low_bits;
      EXPECT_THAT(sql(record_, 6) + ",",
                  HasSubstr(" " + column.name + " = " + std::to_string(kept) + ","));
      expect_held(column, number);
    }
  }
}

std::vector<std::string> assignments_of(const com::Ptr<IPersistentObject>& record) {
  const std::string text = sql(record, 7);
  const std::regex comma(", ");
  return {std::sregex_token_iterator(text.begin(), text.end(), comma, -1), {}};
}

TEST_P(KindTest, MissingColumnCostsOnlyItself) {
  const std::vector<std::string> untouched = assignments_of(record_);
  load(row());
  const std::vector<std::string> loaded = assignments_of(record_);
  std::vector<std::string> names = {"Description", "VertexID"};
  for (const ExpectedColumn& column : columns()) names.push_back(column.name);
  ASSERT_EQ(names.size(), loaded.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    record_ = make();
    fake::Row incomplete = row();
    incomplete.erase(wide(names[i]));
    EXPECT_EQ(load(incomplete), fake::kNoSuchColumn);
    std::vector<std::string> expected = loaded;
    expected[i] = untouched[i];
    EXPECT_EQ(assignments_of(record_), expected);
  }
}

}  // namespace
