// LoadFromCurrentRecordsetPosition: columns, vertex, sets, and what a failure of each does.

#include <gmock/gmock.h>

#include "tests/records/membership.h"

namespace {

using com::Bstr;
using com::Variant;
using fake::operator+;
using server::dirty;
using server::sql;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Lines = fake::Journal::Lines;

fake::Row force_row() {
  return {{L"NodalForceID", Variant(7)},
          {L"Description", Variant(Bstr(L"Tip load"))},
          {L"VertexID", Variant(12)},
          {L"MultiplierTableID", Variant(3)},
          {L"Magnitude", Variant(250)},
          {L"Vx", Variant(0.1)},
          {L"Vy", Variant(0)},
          {L"Vz", Variant(-1)},
          {L"CoordinateSystemID", Variant(4)}};
}
constexpr char kForceValues[] = "'Tip load', 12, 3, 250, 0.10000000000000001, 0, -1, 4";

/// A row as a join yields it, which offers every column under a qualified name only.
fake::Row qualified(const std::wstring& qualifier, const fake::Row& row) {
  fake::Row result;
  for (const auto& [name, value] : row) result[qualifier + L"." + name] = value;
  return result;
}

/// A row that offers every column under both names, so that the second try of a read finds the same
/// value as the first.
fake::Row under_both_names(const std::wstring& table, fake::Row row) {
  row.merge(qualified(table, row));
  return row;
}

Variant null_value() {
  VARIANT value{};
  value.vt = VT_NULL;
  return Variant(value);
}

class LoadTest : public server::Test {
 protected:
  void SetUp() override {
    force_ = server::make<NodalForce, INodalForce>();
    host.journal.clear();
  }
  HRESULT load(const fake::Row& row, const wchar_t* alias = nullptr) {
    const auto rows = host.recordset(row);
    const Bstr owned = alias ? Bstr(alias) : Bstr();
    return force_->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), owned.get());
  }

  com::Ptr<INodalForce> force_;
};

TEST_F(LoadTest, ColumnsAreFoundByTheirNameOrTheAliasOrElseTheTable) {
  EXPECT_EQ(load(qualified(L"F", force_row()), L"F"), S_OK);
  EXPECT_EQ(sql(force_, 5), kForceValues);

  fake::Row other = qualified(L"NodalForces", force_row());
  other[L"NodalForces.Magnitude"] = Variant(1);
  EXPECT_EQ(load(other), S_OK);
  EXPECT_EQ(sql(force_, 5), "'Tip load', 12, 3, 1, 0.10000000000000001, 0, -1, 4");

  // The bare name comes first.
  fake::Row both = force_row();
  both[L"F.Magnitude"] = Variant(1);
  EXPECT_EQ(load(both, L"F"), S_OK);
  EXPECT_EQ(sql(force_, 5), kForceValues);

  // An empty alias is none: automation makes no difference between an empty and a null string.
  EXPECT_EQ(load(qualified(L"NodalForces", force_row()), L""), S_OK);
  EXPECT_EQ(load(qualified(L"", force_row()), L""), fake::kNoSuchColumn);
}

TEST_F(LoadTest, ColumnThatFailsKeepsItsValuesAndCostsNoOther) {
  for (const Variant& value : {null_value(), Variant(Bstr(L"much")), server::omitted()}) {
    ASSERT_EQ(load(force_row()), S_OK);
    force_->put_Vx(8);
    fake::Row row = force_row();
    row[L"Magnitude"] = Variant(9);
    row[L"Vx"] = value;
    row[L"Vz"] = Variant(10);
    EXPECT_EQ(load(under_both_names(L"NodalForces", row)), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(sql(force_, 4), "'Tip load', 12, 3, 9, 8, 0, 10, 4");
    EXPECT_EQ(sql(force_, 5), "'Tip load', 12, 3, 9, 0.10000000000000001, 0, 10, 4");
    EXPECT_EQ(dirty(force_), 0);
  }
}

TEST_F(LoadTest, LastFailureIsReportedOfTheLastColumnAndOfTheNameThatLedToIt) {
  const Variant too_large(1e10);
  fake::Row row = force_row();
  row.erase(L"Description");
  row[L"CoordinateSystemID"] = too_large;
  EXPECT_EQ(load(under_both_names(L"NodalForces", row)), DISP_E_OVERFLOW);

  row = force_row();
  row[L"MultiplierTableID"] = too_large;
  row.erase(L"Vz");
  EXPECT_EQ(load(under_both_names(L"NodalForces", row)), fake::kNoSuchColumn);

  row = force_row();
  row[L"MultiplierTableID"] = null_value();
  EXPECT_EQ(load(row, L"F"), DISP_E_TYPEMISMATCH);
  row[L"F.MultiplierTableID"] = too_large;
  EXPECT_EQ(load(row, L"F"), DISP_E_OVERFLOW);
  row[L"MultiplierTableID"] = too_large;
  row[L"F.MultiplierTableID"] = null_value();
  EXPECT_EQ(load(row, L"F"), DISP_E_TYPEMISMATCH);
}

TEST_F(LoadTest, WithoutARecordsetNothingIsRead) {
  force_->put_ID(5);
  EXPECT_EQ(force_->LoadFromCurrentRecordsetPosition(host.database.get(), nullptr, nullptr), S_OK);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
  EXPECT_EQ(dirty(force_), 1);

  IDispatch* const no_recordset = host.database.get();
  EXPECT_EQ(force_->LoadFromCurrentRecordsetPosition(no_recordset, no_recordset, nullptr),
            E_NOINTERFACE);
  EXPECT_EQ(sql(force_, 4), "'', 0, 1, 0, 0, 0, 0, 0");
}

TEST_F(LoadTest, HostWithoutAConnectionCostsTheSetsAlone) {
  host.database->connection = nullptr;
  EXPECT_EQ(load(force_row()), E_POINTER);
  EXPECT_EQ(sql(force_, 5), kForceValues);
  EXPECT_THAT(host.journal.lines_with("Open"), IsEmpty());
}

/// The lines of one column's read, when it succeeds at once.
Lines read(const std::string& column) {
  return {"Row.Fields", "Fields.Item " + column, "Field.Value"};
}

/// A record of each membership, whose row offers every column and whose query yields two sets.
class MembershipLoadTest : public MembershipTest {
 protected:
  void SetUp() override {
    const std::wstring object(m().object.begin(), m().object.end());
    const std::wstring key = std::wstring(m().set.begin(), m().set.end()) + L"ID";
    host.query_rows = {{{key, Variant(5)}}, {{key, Variant(3)}}};
    row_[object + L"ID"] = Variant(7);
    row_[L"Description"] = Variant(Bstr(L"x"));
    row_[L"VertexID"] = Variant(2);
    for (const std::string& column : kind_columns()) {
      row_[std::wstring(column.begin(), column.end())] = Variant(2);
    }
    row_ = under_both_names(object + L"s", row_);
    host.journal.clear();
  }
  [[nodiscard]] bool is_probe() const { return m().object == "NodalProbe"; }
  [[nodiscard]] Lines kind_columns() const {
    if (is_probe()) return {"Type", "SeparateWindow"};
    if (m().set == "ConstraintSet") return {"Tx", "Ty", "Tz", "Rx", "Ry", "Rz"};
    return {"MultiplierTableID", "Magnitude", "Vx", "Vy", "Vz", "CoordinateSystemID"};
  }
  /// Every call of a load, in order.
  [[nodiscard]] Lines all_calls() const;
  HRESULT load(const com::Ptr<IPersistentObject>& record) {
    return server::Test::load(*record, row_);
  }

  fake::Row row_;
};
FOR_EACH_MEMBERSHIP(MembershipLoadTest);

Lines MembershipLoadTest::all_calls() const {
  const std::string sets = m().sets();
  const std::string links = m().links();
  const Lines common = read(m().object + "ID") + read("Description") + read("VertexID");
  const Lines vertex = {"Vertex.Load db Row null"};
  const Lines one_set = {"new " + m().set, m().set + ".Load db Recordset null",
                         sets + ".Add " + m().set, "Recordset.MoveNext", "Recordset.EOF"};
  Lines columns;
  for (const std::string& column : kind_columns()) columns = columns + read(column);
  // A probe reads its columns first, and never its scenarios.
  if (is_probe()) return common + columns + vertex;
  return common + vertex +
         Lines{"db.Connection",
               "new " + sets,
               "new Recordset",
               "Recordset.Open \"SELECT " + sets + ".* FROM " + sets + " INNER JOIN " + links +
                   " ON " + sets + "." + m().set + "ID = " + links + "." + m().set + "ID WHERE " +
                   links + "." + m().object + "ID = 7\" Connection 0 1 1",
               "Recordset.MoveFirst",
               "Recordset.EOF"} +
         one_set + one_set + Lines{"Recordset.Close"} + columns;
}

TEST_P(MembershipLoadTest, StepsComeInTheirOrderAndEachFailureIsReportedAndCostsNothingElse) {
  const auto complete = m().make();
  const auto first_sets = sets_of(complete);
  host.journal.clear();
  ASSERT_EQ(load(complete), S_OK);
  const Lines lines = host.journal.lines();
  ASSERT_THAT(lines, ElementsAreArray(all_calls()));
  EXPECT_EQ(sets_of(complete).get() == first_sets.get(), is_probe());
  EXPECT_EQ(sets_of(complete).get(), host.newest_sets().dispatch());
  EXPECT_THAT(host.newest_sets().ids(),
              is_probe() ? ElementsAreArray<long>({}) : ElementsAreArray<long>({5, 3}));

  for (std::size_t number = 1; number <= lines.size(); ++number) {
    const std::string& failing = lines[number - 1];
    SCOPED_TRACE(failing);
    const auto record = m().make();
    const auto before = sets_of(record);
    record->put_IsDirty(1);
    host.journal.clear();
    host.journal.fail_call(number, E_ABORT, L"failed");
    const HRESULT result = load(record);
    if (failing.starts_with("Row.") || failing.starts_with("Field")) {
      EXPECT_EQ(result, S_OK) << "the column is read by its qualified name";
    } else if (failing.starts_with("new ")) {
      EXPECT_EQ(result, E_POINTER);
    } else {
      EXPECT_EQ(result, E_ABORT);
      EXPECT_EQ(fake::take_error_words(), "failed");
    }
    EXPECT_EQ(sql(record, 5), sql(complete, 5));
    EXPECT_EQ(dirty(record), 0);
    const bool keeps_sets =
        is_probe() || failing == "db.Connection" || failing == "new " + m().sets();
    EXPECT_EQ(sets_of(record).get() == before.get(), keeps_sets);
  }
}

}  // namespace
