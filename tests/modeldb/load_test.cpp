// ModelDatabase.Load and Query.

#include "tests/modeldb/model_test.h"
#include "tests/modeldb/owned_by_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using ::testing::HasSubstr;

class LoadTest : public model_test::ModelTest {
 protected:
  LoadTest() {
    for (double magnitude : {30, 10, 20}) {
      const auto force = make_force(magnitude);
      force->put_Description(bstr(L"P" + std::to_wstring(static_cast<int>(magnitude))).get());
      EXPECT_EQ(save(force), S_OK) << model_test::last_sentence();
    }
  }

  /// The magnitudes of the forces that meet the condition, or what is said of the condition.
  std::string magnitudes(std::wstring_view where, std::wstring_view order = {}) {
    const auto forces = load_forces(com::Variant(bstr(where)), com::Variant(bstr(order)));
    if (!forces) return model_test::last_sentence();
    long size = 0;
    forces->get_Count(&size);
    std::string list;
    for (int index = 0; index < size; ++index) {
      com::Ptr<INodalForce> force;
      forces->Item(index, force.put());
      double magnitude = 0;
      force->get_Magnitude(&magnitude);
      list += std::to_string(static_cast<int>(magnitude)) + " ";
    }
    return list;
  }
};

TEST_F(LoadTest, ConditionChoosesRecordsWhichComeInTheOrderOfTheirKeys) {
  EXPECT_EQ(magnitudes(L"Magnitude > 10"), "30 20 ");
  EXPECT_EQ(magnitudes(L"Description = 'P10' OR VertexID = 1"), "30 10 ");
  EXPECT_EQ(magnitudes(L"VertexID IN (SELECT VertexID FROM Vertices WHERE VertexID > 2)"), "20 ");
  EXPECT_EQ(magnitudes(L"Description LIKE 'p3%' AND round(Magnitude) = 30"), "30 ");
  EXPECT_EQ(magnitudes(L"Magnitude > 1000"), "");
  EXPECT_EQ(magnitudes(L""), "30 10 20 ");
  // Two ways to find rows, of which the first finds the last row.
  EXPECT_EQ(magnitudes(L"NodalForceID = 3 OR NodalForceID IN (SELECT min(NodalForceID) FROM "
                       L"NodalForces)"),
            "30 20 ");
  EXPECT_EQ(magnitudes(L"", L"Magnitude DESC"), "30 20 10 ");
  EXPECT_EQ(magnitudes(L"Magnitude < 30", L"VertexID > 0, Description"), "10 20 ");
}

TEST_F(LoadTest, ConditionMustBeOneExpression) {
  for (const wchar_t* const condition :
       {L"1; DELETE FROM NodalForces", L"1) OR (1", L"1) UNION SELECT * FROM NodalForces WHERE (1",
        L"1 THEN 1 WHEN 0", L"1 --", L"1 /*", L"1) /*", L"Magnitude >", L"NoSuchColumn = 1",
        L"EXISTS (SELECT * FROM sqlite_master)", L"Magnitude = ?", L"load_extension('x')",
        L"1 ORDER BY Magnitude", L"'"}) {
    SCOPED_TRACE(model_test::narrow(condition));
    EXPECT_THAT(magnitudes(condition), HasSubstr("on the table NodalForces"));
  }
  for (const wchar_t* const order :
       {L"Magnitude LIMIT 1", L"Magnitude) FROM NodalForces --", L"Magnitude ROWS 1 PRECEDING",
        L"Magnitude; SELECT 1", L"Magnitude,", L"Magnitude --"}) {
    EXPECT_THAT(magnitudes(L"", order), HasSubstr("of the table NodalForces"));
  }
  EXPECT_EQ(count(L"NodalForces"), "3");
}

TEST_F(LoadTest, WhatIsWrongIsSaidOfTheTextThatWasGiven) {
  EXPECT_EQ(
      magnitudes(L"Magnitud > 5"),
      "The condition \"Magnitud > 5\" on the table NodalForces cannot be run: no such column: "
      "Magnitud. Correct it. Use the column Magnitude.");
  EXPECT_THAT(magnitudes(L"MultiplierID = 1"), HasSubstr("Use the column MultiplierTableID."));
  EXPECT_THAT(magnitudes(L"", L"ID"), HasSubstr("Use the column NodalForceID."));
  EXPECT_THAT(magnitudes(L"Vertex.ID = 1"), HasSubstr("Use the column VertexID."));
  EXPECT_THAT(magnitudes(L"Nonsense = 1"), HasSubstr("such as \"VertexID = 12\""));
  EXPECT_THAT(magnitudes(L"Magnitude > "), HasSubstr("is not complete. A condition is"));
  EXPECT_THAT(magnitudes(L"", L"VertexID LIMIT 0"), HasSubstr("\"LIMIT\": syntax error"));
  EXPECT_SENTENCE(execute(L"UPDATE NodalForces SET Magnitud = 5"),
                  HasSubstr("\"UPDATE NodalForces SET Magnitud = 5\""));
  for (const auto& number : {com::Variant(12), com::Variant(1.5), com::Variant::boolean(true)}) {
    com::Ptr<IDispatch> none;
    EXPECT_SENTENCE(
        database->Load(bstr(L"NodalForces").get(), number, com::Variant::omitted(), none.put()),
        HasSubstr("The condition that Load was given is no text."));
  }
}

TEST_F(LoadTest, ConditionMayListVeryManyNumbers) {
  std::wstring numbers = L"0";
  for (int i = 2; i < 100'000; ++i) numbers += L", " + std::to_wstring(i);
  EXPECT_EQ(magnitudes(L"VertexID IN (" + numbers + L")"), "10 20 ");
}

TEST_F(LoadTest, WhatRunsForTooLongIsEnded) {
  com::Ptr<IDispatch> object;
  ASSERT_EQ(database->get_Connection(object.put()), S_OK);
  const auto connection = object.query<Connection15>();
  LONG seconds = 0;
  EXPECT_EQ(connection->get_CommandTimeout(&seconds), S_OK);
  EXPECT_EQ(seconds, 30);
  EXPECT_SENTENCE(connection->put_CommandTimeout(-1), HasSubstr("-1"));
  ASSERT_EQ(connection->put_CommandTimeout(1), S_OK);
  // Would run for years.
  std::wstring tables = L"NodalForces";
  for (int i = 0; i < 30; ++i) tables += L", NodalForces F" + std::to_wstring(i);
  const std::wstring endless = L"(SELECT count(*) FROM " + tables + L")";
  EXPECT_THAT(magnitudes(endless + L" > 0"), HasSubstr("CommandTimeout"));
  EXPECT_SENTENCE(database->Query(bstr(L"SELECT " + endless).get(), object.put()),
                  HasSubstr("CommandTimeout"));

  ASSERT_EQ(connection->put_CommandTimeout(0), S_OK);
  ASSERT_EQ(database->get_Command(object.put()), S_OK);
  const auto command = object.query<Command15>();
  EXPECT_EQ(command->get_CommandTimeout(&seconds), S_OK);
  EXPECT_EQ(seconds, 30);
  ASSERT_EQ(command->put_CommandTimeout(1), S_OK);
  command->put_CommandText(bstr(L"UPDATE NodalForces SET Magnitude = " + endless).get());
  com::Ptr<_Recordset> rows;
  EXPECT_SENTENCE(command->Execute(nullptr, nullptr, adCmdText, rows.put()),
                  HasSubstr("CommandTimeout"));
  EXPECT_EQ(magnitudes(L""), "30 10 20 ");
}

TEST_F(LoadTest, VerticesAreSavedAndDeletedAsACollection) {
  com::Ptr<IDispatch> object;
  const auto load = [&](const wchar_t* where) {
    EXPECT_EQ(database->Load(bstr(L"Vertices").get(), com::Variant(bstr(where)),
                             com::Variant::omitted(), object.put()),
              S_OK)
        << model_test::last_sentence();
    return object.query<IVertices>();
  };
  const auto vertices = load(L"");
  ASSERT_TRUE(vertices);
  for (int index = 0; index < 3; ++index) {
    com::Ptr<ICoordinateVertex> vertex;
    ASSERT_EQ(vertices->Item(index, vertex.put()), S_OK);
    EXPECT_EQ(vertex->put_Z(index * 2.5), S_OK);
  }
  vertices->Add(create<Vertex, ICoordinateVertex>().get());
  ASSERT_EQ(vertices->Save(database.get(), com::Variant::omitted(), com::Variant::omitted()), S_OK)
      << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT sum(Z) FROM Vertices"), "7.5");
  ASSERT_EQ(load(L"VertexID > 3")->Delete(database.get()), S_OK);
  EXPECT_EQ(count(L"Vertices"), "3");
}

TEST_F(LoadTest, RowsOfAQueryLoadRecords) {
  com::Ptr<IDispatch> rows;
  ASSERT_EQ(database->Query(bstr(L"SELECT F.*, V.X FROM NodalForces F INNER JOIN Vertices V ON "
                                 L"V.VertexID = F.VertexID WHERE F.NodalForceID = 3")
                                .get(),
                            rows.put()),
            S_OK)
      << model_test::last_sentence();
  const auto force = create<NodalForce, INodalForce>();
  EXPECT_EQ(force->LoadFromCurrentRecordsetPosition(database.get(), rows.get(), bstr(L"F").get()),
            S_OK);
  EXPECT_EQ(id_of(force), 3);
  EXPECT_EQ(id_of(vertex_of(force)), 3);
}

/// Whether ADO's class gives a recordset of the platform now. That of a model refuses a member that
/// the platform's has.
bool recordsets_are_the_platforms() {
  com::Ptr<_Recordset> rows;
  EXPECT_EQ(CoCreateInstance(CLSID_Recordset, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_Recordset),
                             rows.put_void()),
            S_OK);
  constexpr HRESULT kFeatureNotAvailable = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 3251);
  return rows && rows->put_CursorLocation(adUseClient) != kFeatureNotAvailable;
}

/// A vertex that creates a recordset of its own while its record is being loaded.
class RecordsetMaker final : public model_test::OwnedByTest<IVertex> {
 public:
  int times_the_platforms = 0;

  STDMETHODIMP LoadFromCurrentRecordsetPosition(IDispatch*, IDispatch*, BSTR) override {
    if (recordsets_are_the_platforms()) ++times_the_platforms;
    return S_OK;
  }
  STDMETHODIMP get_ID(long*) override { return E_NOTIMPL; }
  STDMETHODIMP put_ID(long) override { return E_NOTIMPL; }
  STDMETHODIMP get_IsDirty(long*) override { return E_NOTIMPL; }
  STDMETHODIMP Save(IDispatch*, VARIANT, VARIANT) override { return E_FAIL; }
  STDMETHODIMP Delete(IDispatch*) override { return E_NOTIMPL; }
  STDMETHODIMP get_SqlString(long, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP FileOpHelper(IDispatch*, long, VARIANT, VARIANT) override { return E_NOTIMPL; }
  STDMETHODIMP get_EventObjectType(long*) override { return E_NOTIMPL; }
  STDMETHODIMP put_IsDirty(long) override { return E_NOTIMPL; }
  STDMETHODIMP get_Description(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP put_Description(BSTR) override { return E_NOTIMPL; }
};

TEST_F(LoadTest, OnlyARecordThatIsBeingLoadedGetsARecordsetOfTheModel) {
  const auto force = make_force(1);
  load_sets_of(force)->Add(make_load_set(L"Wind").get());
  ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
  EXPECT_TRUE(recordsets_are_the_platforms());

  // In the middle of a load.
  RecordsetMaker vertex;
  force->putref_Vertex(&vertex);
  com::Ptr<IDispatch> rows;
  database->Query(bstr(L"SELECT * FROM NodalForces ORDER BY NodalForceID DESC").get(), rows.put());
  EXPECT_EQ(force->LoadFromCurrentRecordsetPosition(database.get(), rows.get(), nullptr), S_OK);
  EXPECT_EQ(vertex.times_the_platforms, 1);
  long sets = 0;
  load_sets_of(force)->get_Count(&sets);
  EXPECT_EQ(sets, 1);

  // After a save that fails between the record's request for the connection and the next call, and
  // for a client that has the connection and collections of sets of its own.
  EXPECT_TRUE(FAILED(save(force)));
  (void)create<LoadSets, ILoadSets>();
  EXPECT_TRUE(recordsets_are_the_platforms());
  com::Ptr<IDispatch> connection;
  database->get_Connection(connection.put());
  EXPECT_TRUE(recordsets_are_the_platforms());

  EXPECT_TRUE(load_forces());
  EXPECT_TRUE(recordsets_are_the_platforms());
  database->Close();
  EXPECT_TRUE(recordsets_are_the_platforms());
}

}  // namespace
