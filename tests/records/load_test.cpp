// LoadFromCurrentRecordsetPosition: columns, vertex, sets, and what a failure of each does.

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/records/membership.h"

namespace {

using com::Bstr;
using com::Variant;
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
  long dirty() const {
    long flag = -1;
    force_->get_IsDirty(&flag);
    return flag;
  }

  com::Ptr<INodalForce> force_;
};

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

TEST_F(LoadTest, ColumnsAreFoundByTheAliasOrElseByTheTable) {
  EXPECT_EQ(load(qualified(L"F", force_row()), L"F"), S_OK);
  EXPECT_EQ(sql(force_, 5), kForceValues);

  fake::Row other = qualified(L"NodalForces", force_row());
  other[L"NodalForces.Magnitude"] = Variant(1);
  EXPECT_EQ(load(other), S_OK);
  EXPECT_EQ(sql(force_, 5), "'Tip load', 12, 3, 1, 0.10000000000000001, 0, -1, 4");

  // An alias that is there but empty is an alias all the same.
  EXPECT_EQ(load(qualified(L"NodalForces", force_row()), L""), fake::kNoSuchColumn);
  EXPECT_EQ(load(qualified(L"", force_row()), L""), S_OK);
}

TEST_F(LoadTest, BareNameComesFirst) {
  fake::Row row = force_row();
  row[L"F.Magnitude"] = Variant(1);
  load(row, L"F");
  EXPECT_EQ(sql(force_, 5), kForceValues);
}

TEST_F(LoadTest, ColumnThatFailsKeepsItsValuesAndCostsNoOther) {
  const Variant null = [] {
    VARIANT value{};
    value.vt = VT_NULL;
    return Variant(value);
  }();
  const struct {
    Variant value;
    HRESULT result;
  } cases[] = {{null, DISP_E_TYPEMISMATCH},
               {Variant(Bstr(L"much")), DISP_E_TYPEMISMATCH},
               {server::omitted(), DISP_E_TYPEMISMATCH}};
  for (const auto& [value, result] : cases) {
    ASSERT_EQ(load(force_row()), S_OK);
    force_->put_Vx(8);
    fake::Row row = force_row();
    row[L"Magnitude"] = Variant(9);
    row[L"Vx"] = value;
    row[L"Vz"] = Variant(10);
    EXPECT_EQ(load(under_both_names(L"NodalForces", row)), result);
    EXPECT_EQ(sql(force_, 4), "'Tip load', 12, 3, 9, 8, 0, 10, 4");
    EXPECT_EQ(sql(force_, 5), "'Tip load', 12, 3, 9, 0.10000000000000001, 0, 10, 4");
    EXPECT_EQ(dirty(), 0);
  }
}

TEST_F(LoadTest, EveryColumnMayBeMissing) {
  EXPECT_EQ(load({}), fake::kNoSuchColumn);
  EXPECT_EQ(sql(force_, 4), "'', 0, 1, 0, 0, 0, 0, 0");
  for (const auto& [name, value] : force_row()) {
    fake::Row row = force_row();
    row.erase(name);
    EXPECT_EQ(load(row), fake::kNoSuchColumn) << fake::narrow(name);
    EXPECT_EQ(load(force_row()), S_OK) << fake::narrow(name);
    EXPECT_EQ(sql(force_, 4), kForceValues) << fake::narrow(name);
  }
}

TEST_F(LoadTest, LastFailureIsReported) {
  constexpr double kTooLarge = 1e10;
  fake::Row row = force_row();
  row.erase(L"Description");
  row[L"CoordinateSystemID"] = Variant(kTooLarge);
  EXPECT_EQ(load(under_both_names(L"NodalForces", row)), DISP_E_OVERFLOW);

  row = force_row();
  row[L"MultiplierTableID"] = Variant(kTooLarge);
  row.erase(L"Vz");
  EXPECT_EQ(load(under_both_names(L"NodalForces", row)), fake::kNoSuchColumn);
}

TEST_F(LoadTest, SecondOfTheTwoTriesIsReported) {
  fake::Row row = force_row();
  row[L"Vx"] = Variant(Bstr(L"much"));
  EXPECT_EQ(load(row, L"F"), fake::kNoSuchColumn);
  row[L"F.Vx"] = Variant(Bstr(L"much"));
  EXPECT_EQ(load(row, L"F"), DISP_E_TYPEMISMATCH);
}

TEST_F(LoadTest, ConstraintWithAColumnThatDoesNotConvertLoadsTheOthers) {
  const auto support = server::make<NodalRigidBoundary, INodalRigidBoundary>();
  const auto rows = host.recordset(
      under_both_names(L"NodalRigidBoundaries", {{L"NodalRigidBoundaryID", Variant(1)},
                                                 {L"Description", Variant(Bstr(L"Base"))},
                                                 {L"VertexID", Variant(2)},
                                                 {L"FixedX", Variant(-1)},
                                                 {L"FixedY", Variant(Bstr(L"perhaps"))},
                                                 {L"FixedZ", Variant(1)},
                                                 {L"Stiffness", Variant(5)},
                                                 {L"IsRotation", Variant(-1)}}));
  EXPECT_EQ(support->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(sql(support, 5), "'Base', 2, -1, 0, 1, 5, -1");
}

TEST_F(LoadTest, WithoutARecordsetNothingIsRead) {
  force_->put_ID(5);
  EXPECT_EQ(force_->LoadFromCurrentRecordsetPosition(host.database.get(), nullptr, nullptr), S_OK);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
  EXPECT_EQ(dirty(), 1);
}

TEST_F(LoadTest, ObjectThatIsNoRecordsetFailsEveryColumn) {
  EXPECT_EQ(
      force_->LoadFromCurrentRecordsetPosition(host.database.get(), host.database.get(), nullptr),
      E_NOINTERFACE);
  EXPECT_EQ(sql(force_, 4), "'', 0, 1, 0, 0, 0, 0, 0");
}

TEST_F(LoadTest, RecordWithoutAVertexLoadsEverythingElse) {
  force_->putref_Vertex(nullptr);
  EXPECT_EQ(load(force_row()), E_POINTER);
  EXPECT_EQ(sql(force_, 5), kForceValues);
  EXPECT_THAT(host.journal.lines_with("Open"), ::testing::SizeIs(1));
}

TEST_F(LoadTest, WithoutAModelDatabaseEverythingButTheSetsIsLoaded) {
  for (IDispatch* const none : {static_cast<IDispatch*>(nullptr), host.database->command.get()}) {
    const auto rows = host.recordset(force_row());
    EXPECT_EQ(force_->LoadFromCurrentRecordsetPosition(none, rows.get(), nullptr), E_POINTER);
    EXPECT_EQ(sql(force_, 4), kForceValues);
  }
}

/// The lines of one column's read, when it succeeds at once.
Lines read(const std::string& column) {
  return {"Row.Fields", "Fields.Item " + column, "Field.Value"};
}

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

class MembershipLoadTest : public MembershipTest {
 protected:
  void SetUp() override {
    host.query_rows = {{{set_key(), Variant(5)}}, {{set_key(), Variant(3)}}};
    for (const wchar_t* const name :
         {L"VertexID", L"Tx", L"Ty", L"Tz", L"Rx", L"Ry", L"Rz", L"Type", L"SeparateWindow", L"Vx",
          L"Vy", L"Vz", L"Magnitude", L"MultiplierTableID", L"CoordinateSystemID"}) {
      row_[name] = Variant(2);
    }
    const std::wstring object(m().object.begin(), m().object.end());
    row_[object + L"ID"] = Variant(7);
    row_[L"Description"] = Variant(Bstr(L"x"));
    row_ = under_both_names(object + L"s", row_);
  }

  [[nodiscard]] std::wstring set_key() const {
    return std::wstring(m().set.begin(), m().set.end()) + L"ID";
  }
  [[nodiscard]] HRESULT load(const com::Ptr<IPersistentObject>& record) {
    const auto rows = host.recordset(row_);
    return record->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr);
  }
  [[nodiscard]] com::Ptr<IDispatch> sets_of(const com::Ptr<IPersistentObject>& record) const {
    Variant held;
    EXPECT_EQ(server::LateBound(record.get()).get(m().property, held), S_OK);
    return com::Ptr<IDispatch>(held.get().pdispVal);
  }

  fake::Row row_;
};

INSTANTIATE_TEST_SUITE_P(All, MembershipLoadTest, ::testing::Values(kLoad, kConstraint),
                         ::testing::PrintToStringParamName());

TEST_P(MembershipLoadTest, StepsComeInTheirOrder) {
  const auto record = m().make();
  host.journal.clear();
  EXPECT_EQ(load(record), S_OK);
  const std::string sets = m().sets();
  const std::string links = m().links();
  const Lines kind_columns =
      m().set == "LoadSet"
          ? read("MultiplierTableID") + read("Magnitude") + read("Vx") + read("Vy") + read("Vz") +
                read("CoordinateSystemID")
          : read("Tx") + read("Ty") + read("Tz") + read("Rx") + read("Ry") + read("Rz");
  EXPECT_THAT(
      host.journal.lines(),
      ElementsAreArray(
          read(m().object + "ID") + read("Description") + read("VertexID") +
          Lines{"Vertex.Load db Row null", "db.Connection", "new " + sets, "new Recordset",
                "Recordset.Open \"SELECT " + sets + ".* FROM " + sets + " INNER JOIN " + links +
                    " ON " + sets + "." + m().set + "ID = " + links + "." + m().set + "ID WHERE " +
                    links + "." + m().object + "ID = 7\" Connection 0 1 1",
                "Recordset.MoveFirst", "Recordset.EOF", "new " + m().set,
                m().set + ".Load db Recordset null", sets + ".Add " + m().set, "Recordset.MoveNext",
                "Recordset.EOF", "new " + m().set, m().set + ".Load db Recordset null",
                sets + ".Add " + m().set, "Recordset.MoveNext", "Recordset.EOF",
                "Recordset.Close"} +
          kind_columns));
  EXPECT_THAT(host.newest_sets().ids(), ElementsAre(5, 3));
  EXPECT_EQ(sets_of(record).get(), host.newest_sets().dispatch());
}

TEST_P(MembershipLoadTest, RecordInNoSetGetsANewEmptyCollection) {
  const auto record = m().make();
  const auto before = sets_of(record);
  host.query_rows.clear();
  EXPECT_EQ(load(record), S_OK);
  EXPECT_NE(sets_of(record).get(), before.get());
  EXPECT_THAT(host.newest_sets().ids(), IsEmpty());
}

TEST_P(MembershipLoadTest, EachFailingCallIsReportedAndCostsNothingElse) {
  const auto complete = m().make();
  host.journal.clear();
  ASSERT_EQ(load(complete), S_OK);
  const Lines lines = host.journal.lines();
  const auto connected = std::ranges::find(lines, "new " + m().sets());
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
    EXPECT_EQ(sql(*record, 5), sql(*complete, 5));
    long dirty = -1;
    record->get_IsDirty(&dirty);
    EXPECT_EQ(dirty, 0);
    const bool keeps_sets = failing == "db.Connection" || failing == *connected;
    EXPECT_EQ(sets_of(record).get() == before.get(), keeps_sets);
  }
}

class ProbeLoadTest : public MembershipLoadTest {};
INSTANTIATE_TEST_SUITE_P(All, ProbeLoadTest, ::testing::Values(kProbe),
                         ::testing::PrintToStringParamName());

TEST_P(ProbeLoadTest, ReadsItsColumnsFirstAndNeverItsScenarios) {
  const auto probe = m().make();
  const auto before = sets_of(probe);
  probe->put_IsDirty(1);
  host.journal.clear();
  EXPECT_EQ(load(probe), S_OK);
  EXPECT_THAT(
      host.journal.lines(),
      ElementsAreArray(read("NodalProbeID") + read("Description") + read("VertexID") +
                       read("Type") + read("SeparateWindow") + Lines{"Vertex.Load db Row null"}));
  EXPECT_EQ(sets_of(probe).get(), before.get());
  long dirty = -1;
  probe->get_IsDirty(&dirty);
  EXPECT_EQ(dirty, 0);
}

TEST_P(ProbeLoadTest, NeedsNoModelDatabaseOfItsOwn) {
  const auto probe = m().make();
  const auto rows = host.recordset(row_);
  EXPECT_EQ(probe->LoadFromCurrentRecordsetPosition(nullptr, rows.get(), nullptr), S_OK);
  EXPECT_EQ(sql(*probe, 5), "'x', 2, 2, 2");
}

TEST_P(ProbeLoadTest, FailingVertexIsReportedAfterTheColumnsAreRead) {
  const auto probe = m().make();
  host.journal.fail("Vertex.Load", E_ABORT, L"no such node");
  EXPECT_EQ(load(probe), E_ABORT);
  EXPECT_EQ(fake::take_error_words(), "no such node");
  EXPECT_EQ(sql(*probe, 5), "'x', 2, 2, 2");
}

}  // namespace
