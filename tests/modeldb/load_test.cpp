// ModelDatabase.Load and Query.

#include <cmath>
#include <limits>

#include "tests/modeldb/model_test.h"

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
  EXPECT_THAT(magnitudes(L"Nonsense = 1"), HasSubstr("such as \"VertexID = 12\""));
  EXPECT_SENTENCE(execute(L"UPDATE NodalForces SET Magnitud = 5"),
                  HasSubstr("\"UPDATE NodalForces SET Magnitud = 5\""));
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

TEST_F(LoadTest, DoubleKeepsEveryBit) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {1.0 / 3, 5e-324, -Limits::min(), Limits::max(), 1e22,
                              123456789.123456789, std::nextafter(1.0, 2), 2251799813685249.5}) {
    const auto force = make_force(number);
    ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
    double loaded = 0;
    load_force(id_of(force))->get_Magnitude(&loaded);
    EXPECT_EQ(loaded, number);
  }
}

}  // namespace
