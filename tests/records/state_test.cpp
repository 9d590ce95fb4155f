// What a record holds apart from its kind's columns.

#include <gmock/gmock.h>

#include "tests/records/membership.h"

namespace {

using server::dirty;
using server::LateBound;
using server::sql;
using ::testing::ElementsAre;
using ::testing::StartsWith;

class RecordStateTest : public server::Test {
 protected:
  static com::Ptr<INodalForce> make() { return server::make<NodalForce, INodalForce>(); }

  static std::string description(const com::Ptr<INodalForce>& record) {
    com::Bstr text;
    EXPECT_EQ(record->get_Description(text.put()), S_OK);
    return text ? fake::narrow(text.view()) : "null";
  }
  static long id(const com::Ptr<INodalForce>& record) {
    long number = -99;
    EXPECT_EQ(record->get_ID(&number), S_OK);
    return number;
  }
};

TEST_F(RecordStateTest, NewRecordIsEmptyCleanAndHasItsOwnHostObjects) {
  const auto record = make();
  EXPECT_THAT(host.journal.lines(), ElementsAre("new Vertex", "new LoadSets"));
  EXPECT_EQ(id(record), 0);
  EXPECT_EQ(dirty(record), 0);
  EXPECT_EQ(description(record), "");
}

TEST_F(RecordStateTest, DescriptionPutTrimsAndEndsAtTheFirstNul) {
  const auto record = make();
  const struct {
    std::wstring_view put;
    std::string held;
  } cases[] = {
      {L"  a b  ", "a b"}, {L"\t\r\n x \v\f", "x"}, {L" \t ", ""},           {L"", ""},
      {L"it's", "it's"},   {L"Stütze", "Stütze"},   {{L"ab \0cd", 6}, "ab"},
  };
  for (const auto& [put, held] : cases) {
    record->put_IsDirty(0);
    EXPECT_EQ(record->put_Description(com::Bstr(put).get()), S_OK);
    EXPECT_EQ(dirty(record), 1);
    EXPECT_EQ(description(record), held);
    EXPECT_THAT(sql(record, 6), StartsWith("Description = '" + held + "', "));
    EXPECT_THAT(sql(record, 7), StartsWith("Description = '', "));
  }
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
  const com::Ptr<IVertex> vertex(new fake::Persistent<IVertex>(host.journal, "Vertex", 12));
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

class SetsPropertyTest : public MembershipTest {};
FOR_EACH_MEMBERSHIP(SetsPropertyTest);

TEST_P(SetsPropertyTest, IsTheVeryObjectThatWasPutAndNullLeavesNone) {
  const auto record = m().make();
  const auto other = m().make();
  const LateBound script(record);
  EXPECT_EQ(script.put_reference(m().property, sets_of(other).get()), S_OK);
  EXPECT_EQ(dirty(record), 1);
  EXPECT_EQ(sets_of(record).get(), host.newest_sets().dispatch());

  record->put_IsDirty(0);
  EXPECT_EQ(script.put_reference(m().property, nullptr), E_POINTER);
  EXPECT_EQ(dirty(record), 0);
  EXPECT_EQ(script.call(m().property).result, E_POINTER);
}

TEST_P(SetsPropertyTest, IsMissingLikeTheVertexWhenTheHostsClassesAre) {
  host.journal.fail("new ", REGDB_E_CLASSNOTREG);
  const auto record = m().make();
  ASSERT_TRUE(record);
  const LateBound script(record);
  EXPECT_EQ(script.call(L"Vertex").result, E_POINTER);
  EXPECT_EQ(script.call(m().property).result, E_POINTER);
}

}  // namespace
