// What a record holds apart from its kind's columns.

#include <gmock/gmock.h>

#include "tests/host/server.h"
#include "tests/records/membership.h"

namespace {

using server::sql;
using ::testing::ElementsAre;
using ::testing::StartsWith;

class RecordStateTest : public server::Test {
 protected:
  static com::Ptr<INodalForce> make() { return server::make<NodalForce, INodalForce>(); }

  static long dirty(const com::Ptr<INodalForce>& record) {
    long flag = -99;
    EXPECT_EQ(record->get_IsDirty(&flag), S_OK);
    return flag;
  }
  static std::string description(const com::Ptr<INodalForce>& record) {
    com::Bstr text;
    EXPECT_EQ(record->get_Description(text.put()), S_OK);
    return text ? fake::narrow(text.view()) : "null";
  }
  com::Ptr<IVertex> vertex_with_id(long id) {
    return com::Ptr<IVertex>(new fake::Persistent<IVertex>(host.journal, "Vertex", id));
  }
};

TEST_F(RecordStateTest, NewRecordIsEmptyCleanAndHasItsOwnHostObjects) {
  const auto record = make();
  EXPECT_THAT(host.journal.lines(), ElementsAre("new Vertex", "new LoadSets"));
  long id = -1;
  record->get_ID(&id);
  EXPECT_EQ(id, 0);
  EXPECT_EQ(dirty(record), 0);
  EXPECT_EQ(description(record), "");
}

TEST_F(RecordStateTest, IdPutMarksDirtyAndOnlyIsDirtyPutTakesTheMarkAway) {
  const auto record = make();
  record->put_ID(-7);
  EXPECT_EQ(dirty(record), 1);
  record->put_IsDirty(0);
  EXPECT_EQ(dirty(record), 0);
  long id = 0;
  record->get_ID(&id);
  EXPECT_EQ(id, -7);
}

TEST_F(RecordStateTest, IsDirtyKeepsAnyNumber) {
  const auto record = make();
  for (const long number : {5L, -1L, LONG_MIN}) {
    record->put_IsDirty(number);
    EXPECT_EQ(dirty(record), number);
  }
}

TEST_F(RecordStateTest, DescriptionPutTrimsAndEndsAtTheFirstNul) {
  const auto record = make();
  const struct {
    std::wstring_view put;
    std::string held;
  } cases[] = {
      {L"  a b  ", "a b"}, {L"\t\r\n x \v\f", "x"}, {L" \t ", ""},
      {L"", ""},           {L"it's", "it's"},       {L"Stütze", "Stütze"},
  };
  for (const auto& [put, held] : cases) {
    record->put_IsDirty(0);
    EXPECT_EQ(record->put_Description(com::Bstr(put).get()), S_OK);
    EXPECT_EQ(dirty(record), 1);
    EXPECT_EQ(description(record), held);
    EXPECT_THAT(sql(record, 6), StartsWith("Description = '" + held + "', "));
    EXPECT_THAT(sql(record, 7), StartsWith("Description = '', "));
  }
}

TEST_F(RecordStateTest, DescriptionCutAtANulEmbeddedInTheString) {
  const auto record = make();
  record->put_Description(com::Bstr(std::wstring_view(L"ab \0cd", 6)).get());
  EXPECT_EQ(description(record), "ab");
}

TEST_F(RecordStateTest, NullDescriptionStaysNullAndIsWrittenAsEmpty) {
  const auto record = make();
  EXPECT_EQ(record->put_Description(nullptr), S_OK);
  EXPECT_EQ(description(record), "null");
  EXPECT_THAT(sql(record, 4), StartsWith("'', "));
}

TEST_F(RecordStateTest, DescriptionGetTrimsWhatWasLoadedForGood) {
  const auto record = make();
  const auto rows = host.recordset({{L"Description", com::Variant(com::Bstr(L" x "))}});
  record->LoadFromCurrentRecordsetPosition(host.database.get(), rows.get(), nullptr);
  EXPECT_THAT(sql(record, 4), StartsWith("' x ', "));
  EXPECT_EQ(description(record), "x");
  EXPECT_THAT(sql(record, 4), StartsWith("'x', "));
  EXPECT_THAT(sql(record, 5), StartsWith("' x ', "));
}

TEST_F(RecordStateTest, VertexIsTheVeryObjectThatWasPut) {
  const auto record = make();
  const auto vertex = vertex_with_id(12);
  EXPECT_EQ(record->putref_Vertex(vertex.get()), S_OK);
  EXPECT_EQ(dirty(record), 1);
  com::Ptr<IDispatch> held;
  EXPECT_EQ(record->get_Vertex(held.put()), S_OK);
  EXPECT_EQ(held.get(), vertex.get());
  EXPECT_THAT(sql(record, 4), StartsWith("'', 12, "));
  EXPECT_THAT(sql(record, 5), StartsWith("'', 0, "));
}

TEST_F(RecordStateTest, NullVertexIsRefusedAndLeavesNone) {
  const auto record = make();
  EXPECT_EQ(record->putref_Vertex(nullptr), E_POINTER);
  EXPECT_EQ(dirty(record), 0);
  com::Ptr<IDispatch> held;
  EXPECT_EQ(record->get_Vertex(held.put()), E_POINTER);
  EXPECT_EQ(sql(record, 4), "0x80004003");
  EXPECT_EQ(sql(record, 6), "0x80004003");
  EXPECT_THAT(sql(record, 5), StartsWith("'', 0, "));
  EXPECT_THAT(sql(record, 7), StartsWith("Description = '', VertexID = 0, "));
}

TEST_F(RecordStateTest, ObjectThatIsNoVertexFailsWhereAVertexIsNeeded) {
  const auto record = make();
  EXPECT_EQ(record->putref_Vertex(host.database.get()), S_OK);
  EXPECT_EQ(sql(record, 4), "0x80004002");
}

TEST_F(RecordStateTest, RecordsComeIntoBeingWithoutTheHostsClasses) {
  host.journal.fail("new Vertex", REGDB_E_CLASSNOTREG);
  host.journal.fail("new LoadSets", E_OUTOFMEMORY);
  const auto record = make();
  ASSERT_TRUE(record);
  com::Ptr<IDispatch> held;
  EXPECT_EQ(record->get_Vertex(held.put()), E_POINTER);
  EXPECT_EQ(record->get_LoadSets(held.put()), E_POINTER);
  EXPECT_EQ(record->FileOpHelper(host.database.get(), 1, server::no(), server::no()), E_POINTER);
}

using SetsPropertyTest = MembershipTest;
INSTANTIATE_TEST_SUITE_P(All, SetsPropertyTest, ::testing::Values(kLoad, kConstraint, kProbe),
                         ::testing::PrintToStringParamName());

TEST_P(SetsPropertyTest, IsTheVeryObjectThatWasPut) {
  const auto record = m().make();
  const auto other = m().make();
  const server::LateBound script(record.get());
  IDispatch* const sets = host.newest_sets().dispatch();
  EXPECT_EQ(script.put_reference(m().property, sets), S_OK);
  long flag = 0;
  record->get_IsDirty(&flag);
  EXPECT_EQ(flag, 1);
  com::Variant held;
  EXPECT_EQ(script.get(m().property, held), S_OK);
  EXPECT_EQ(held.get().pdispVal, sets);
}

TEST_P(SetsPropertyTest, NullIsRefusedAndLeavesNone) {
  const auto record = m().make();
  const server::LateBound script(record.get());
  EXPECT_EQ(script.put_reference(m().property, nullptr), E_POINTER);
  long flag = -1;
  record->get_IsDirty(&flag);
  EXPECT_EQ(flag, 0);
  com::Variant held;
  EXPECT_EQ(script.get(m().property, held), E_POINTER);
}

}  // namespace
