// Every kind against what is expected of it.

#include <gmock/gmock.h>

#include <regex>

#include "com/bstr.h"
#include "tests/host/server.h"
#include "tests/kinds/expected.h"
#include "tests/kinds/kind.h"

namespace {

using com::Bstr;
using com::Variant;
using server::sql;
using ::testing::HasSubstr;

bool is_flag(Held held) {
  return held == Held::kFlag || held == Held::kWideFlag || held == Held::kRawFlag;
}

class KindTest : public server::Test, public ::testing::WithParamInterface<Kind> {
 protected:
  void SetUp() override {
    ASSERT_EQ(expected_.name, kind().name);
    ASSERT_EQ(expected_.properties.size(), kind().columns.size());
    record_ = make();
  }

  const Kind& kind() const { return GetParam(); }
  [[nodiscard]] com::Ptr<IPersistentObject> make() const {
    return server::as_record(server::make(kind().record_class).get(), kind().record_interface);
  }

  /// The value of a column's own, as the expected texts have it.
  [[nodiscard]] Variant value_of(std::size_t column) const {
    const long number = static_cast<long>(column) + 1;
    return expected_.properties[column].held == Held::kDouble ? Variant(number + 0.5)
                                                              : Variant(number);
  }
  /// A row in which every column of the kind has a value of its own.
  [[nodiscard]] fake::Row row() const {
    const std::wstring object(kind().name.begin(), kind().name.end());
    fake::Row row{{object + L"ID", Variant(77)},
                  {L"Description", Variant(Bstr(L"Tip load"))},
                  {L"VertexID", Variant(12)}};
    for (std::size_t i = 0; i < kind().columns.size(); ++i) row[kind().columns[i]] = value_of(i);
    return row;
  }
  HRESULT load(const fake::Row& row) {
    const auto rows = host.recordset(row);
    return record_->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr);
  }
  HRESULT put(const ExpectedProperty& property, const Variant& value) {
    VARIANT typed = value;
    if (is_flag(property.held)) {
      typed.vt = VT_BOOL;
      typed.boolVal = static_cast<VARIANT_BOOL>(value.get().lVal);
    }
    return server::LateBound(record_.get()).put(property.name.c_str(), typed);
  }
  Variant get(const ExpectedProperty& property) {
    Variant value;
    EXPECT_EQ(server::LateBound(record_.get()).get(property.name.c_str(), value), S_OK);
    return value;
  }
  [[nodiscard]] long dirty() const {
    long flag = -99;
    record_->get_IsDirty(&flag);
    return flag;
  }

  const ExpectedKind expected_ = expected_kind(kind().name);
  com::Ptr<IPersistentObject> record_;
};

INSTANTIATE_TEST_SUITE_P(All, KindTest, ::testing::ValuesIn(all_kinds()),
                         ::testing::PrintToStringParamName());

TEST(KindsTest, ThereAreEighteen) { EXPECT_EQ(all_kinds().size(), 18U); }

TEST_P(KindTest, NamesAndEventCodeAreTheHosts) {
  EXPECT_EQ(sql(*record_, 1), expected_.table);
  EXPECT_EQ(sql(*record_, 2), expected_.name + "ID");
  EXPECT_EQ(sql(*record_, 3), expected_.columns);
  long event = 0;
  EXPECT_EQ(record_->get_EventObjectType(&event), S_OK);
  EXPECT_EQ(event, expected_.record_event);
}

TEST_P(KindTest, NewRecordHoldsTheDefaultsAsCurrentAndSaved) {
  EXPECT_EQ(sql(*record_, 4), expected_.defaults);
  EXPECT_EQ(sql(*record_, 5), expected_.defaults);
}

TEST_P(KindTest, RowIsLoadedAsCurrentAndSaved) {
  record_->put_IsDirty(1);
  EXPECT_EQ(load(row()), S_OK);
  EXPECT_EQ(sql(*record_, 4), expected_.values);
  EXPECT_EQ(sql(*record_, 5), expected_.values);
  EXPECT_EQ(sql(*record_, 6), expected_.assignments);
  EXPECT_EQ(sql(*record_, 7), expected_.assignments);
  long id = 0;
  record_->get_ID(&id);
  EXPECT_EQ(id, 77);
  EXPECT_EQ(dirty(), 0);
}

TEST_P(KindTest, PropertiesReachTheirColumnsAndTheSavedImageWaitsForTheCommit) {
  for (std::size_t i = 0; i < expected_.properties.size(); ++i) {
    record_->put_IsDirty(0);
    EXPECT_EQ(put(expected_.properties[i], value_of(i)), S_OK);
    EXPECT_EQ(dirty(), 1);
  }
  record_->put_Description(Bstr(L"Tip load").get());
  Variant vertex;
  server::LateBound(record_.get()).get(L"Vertex", vertex);
  com::Ptr<IDispatch>(vertex.get().pdispVal).query<IVertex>()->put_ID(12);
  EXPECT_EQ(sql(*record_, 4), expected_.values);
  EXPECT_EQ(sql(*record_, 6), expected_.assignments);
  EXPECT_EQ(sql(*record_, 5), expected_.defaults);

  constexpr long kBeforeSave = 1;
  constexpr long kAfterSave = 2;
  for (const long operation : {kBeforeSave, kAfterSave}) {
    EXPECT_EQ(record_->FileOpHelper(host.database.get(), operation, server::no(), server::no()),
              S_OK);
  }
  EXPECT_EQ(sql(*record_, 5), expected_.values);
  EXPECT_EQ(sql(*record_, 7), expected_.assignments);
}

TEST_P(KindTest, LoadedValuesStaySavedWhenPropertiesArePut) {
  load(row());
  for (const ExpectedProperty& property : expected_.properties) put(property, Variant(0));
  EXPECT_EQ(sql(*record_, 5), expected_.values);
  EXPECT_NE(sql(*record_, 4), expected_.values);
}

TEST_P(KindTest, PropertiesTakeAnyValueAndGiveItBack) {
  constexpr double kHuge = 0x1p900;
  for (const ExpectedProperty& property : expected_.properties) {
    for (const long number : {-1L, 0L, 1L, 2L, 7L, 32767L, LONG_MIN, LONG_MAX, 65537L}) {
      SCOPED_TRACE(fake::narrow(property.name) + " = " + std::to_string(number));
      const auto low_bits = static_cast<std::int16_t>(number);
      if (is_flag(property.held) && low_bits != number) continue;
      record_->put_IsDirty(0);
      put(property, property.held == Held::kDouble ? Variant(number * kHuge) : Variant(number));
      EXPECT_EQ(dirty(), 1);
      const Variant result = get(property);
      const VARIANT& value = result.get();
      switch (property.held) {
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
        case Held::kWideFlag:
          EXPECT_EQ(value.boolVal, number != 0 ? VARIANT_TRUE : VARIANT_FALSE);
      }
    }
  }
}

TEST_P(KindTest, LoadedFlagsAreKeptInTheirWidthAndWrittenAsTheNumberHeld) {
  for (std::size_t i = 0; i < expected_.properties.size(); ++i) {
    const Held held = expected_.properties[i].held;
    if (held == Held::kDouble || held == Held::kLong) continue;
    for (const long number : {1L, 2L, 40000L, 65536L}) {
      fake::Row changed = row();
      changed[kind().columns[i]] = Variant(number);
      ASSERT_EQ(load(changed), S_OK);
      const auto low_bits = static_cast<std::int16_t>(number);
      const long kept = held == Held::kWideFlag ? number : low_bits;
      EXPECT_THAT(sql(*record_, 6) + ",", HasSubstr(" " + fake::narrow(kind().columns[i]) + " = " +
                                                    std::to_string(kept) + ","));
      const Variant value = get(expected_.properties[i]);
      if (held == Held::kShort) {
        EXPECT_EQ(value.get().lVal, kept);
      } else if (held == Held::kRawFlag) {
        EXPECT_EQ(value.get().boolVal, kept);
      } else {
        EXPECT_EQ(value.get().boolVal, kept != 0 ? VARIANT_TRUE : VARIANT_FALSE);
      }
    }
  }
}

std::vector<std::string> assignments_of(IPersistentObject& record) {
  const std::string text = sql(record, 6);
  const std::regex comma(", ");
  return {std::sregex_token_iterator(text.begin(), text.end(), comma, -1), {}};
}

TEST_P(KindTest, MissingColumnCostsOnlyItself) {
  const std::vector<std::string> untouched = assignments_of(*record_);
  load(row());
  const std::vector<std::string> loaded = assignments_of(*record_);
  constexpr std::size_t kCommonColumns = 2;
  for (std::size_t i = 0; i < kind().columns.size(); ++i) {
    record_ = make();
    fake::Row incomplete = row();
    incomplete.erase(kind().columns[i]);
    EXPECT_EQ(load(incomplete), fake::kNoSuchColumn);
    auto expected = loaded;
    expected[kCommonColumns + i] = untouched[kCommonColumns + i];
    EXPECT_EQ(assignments_of(*record_), expected);
  }
}

}  // namespace
