// ModelDatabase.Load and Query.

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
  std::string magnitudes(std::wstring_view where) {
    const auto forces = load_forces(com::Variant(bstr(where)));
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

TEST_F(LoadTest, RecordsComeInTheOrderOfTheirKeys) { EXPECT_EQ(magnitudes(L"1"), "30 10 20 "); }

TEST_F(LoadTest, LoadedRecordIsClean) {
  const auto force = load_force(2);
  ASSERT_TRUE(force);
  long dirty = -1;
  force->get_IsDirty(&dirty);
  EXPECT_EQ(dirty, 0);
  EXPECT_EQ(id_of(force), 2);
}

TEST_F(LoadTest, ConditionChoosesRecords) {
  EXPECT_EQ(magnitudes(L"Magnitude > 10"), "30 20 ");
  EXPECT_EQ(magnitudes(L"Description = 'P10' OR VertexID = 1"), "30 10 ");
  EXPECT_EQ(magnitudes(L"VertexID IN (SELECT VertexID FROM Vertices WHERE VertexID > 2)"), "20 ");
  EXPECT_EQ(magnitudes(L"Magnitude > 1000"), "");
  EXPECT_EQ(magnitudes(L""), "30 10 20 ");
}

TEST_F(LoadTest, ConditionMustBeOneExpression) {
  for (const wchar_t* const condition :
       {L"1; DELETE FROM NodalForces", L"1) OR (1", L"1) UNION SELECT * FROM NodalForces WHERE (1",
        L"1 THEN 1 WHEN 0", L"1 --", L"1 /*", L"1) /*", L"Magnitude >", L"NoSuchColumn = 1",
        L"EXISTS (SELECT * FROM sqlite_master)", L"Magnitude = ?", L"load_extension('x')",
        L"1 ORDER BY Magnitude", L"'"}) {
    SCOPED_TRACE(model_test::narrow(condition));
    EXPECT_THAT(magnitudes(condition), HasSubstr("on the table NodalForces cannot be used"));
  }
  EXPECT_EQ(count(L"NodalForces"), "3");
}

TEST_F(LoadTest, TableIsFoundWhateverTheLetterCase) {
  com::Ptr<IDispatch> forces;
  EXPECT_EQ(database->Load(bstr(L"nodalforces").get(), com::Variant::omitted(), forces.put()),
            S_OK);
  EXPECT_TRUE(forces.query<INodalForces>());
}

TEST_F(LoadTest, SetsAreLoadedToo) {
  const auto set = make_load_set(L"Wind");
  set->Save(database.get(), com::Variant::omitted(), com::Variant::omitted());
  com::Ptr<IDispatch> sets;
  ASSERT_EQ(database->Load(bstr(L"LoadSets").get(), com::Variant::omitted(), sets.put()), S_OK)
      << model_test::last_sentence();
  long size = 0;
  sets.query<ILoadSets>()->get_Count(&size);
  EXPECT_EQ(size, 1);
}

TEST_F(LoadTest, UnknownTableIsAnsweredWithTheList) {
  com::Ptr<IDispatch> none;
  EXPECT_SENTENCE(database->Load(bstr(L"Forces").get(), com::Variant::omitted(), none.put()),
                  HasSubstr("\"Forces\""), HasSubstr("NodalForces, "), HasSubstr("LoadSets"));
  EXPECT_SENTENCE(database->Load(bstr(L"Vertices").get(), com::Variant::omitted(), none.put()),
                  HasSubstr("\"Vertices\""));
  EXPECT_FALSE(none);
}

TEST_F(LoadTest, RowThatCannotBeLoadedIsNamed) {
  ASSERT_EQ(execute(L"UPDATE NodalForces SET Magnitude = 'much' WHERE NodalForceID = 2"), S_OK);
  com::Ptr<IDispatch> none;
  EXPECT_SENTENCE(database->Load(bstr(L"NodalForces").get(), com::Variant::omitted(), none.put()),
                  HasSubstr("NodalForce 2"), HasSubstr("NodalForces"));
  EXPECT_FALSE(none);
  EXPECT_TRUE(load_force(3));
}

TEST_F(LoadTest, QueryReadsAndNeverWrites) {
  EXPECT_EQ(value(L"SELECT sum(Magnitude) FROM NodalForces"), "60");
  com::Ptr<IDispatch> none;
  EXPECT_SENTENCE(database->Query(bstr(L"DELETE FROM NodalForces").get(), none.put()),
                  HasSubstr("DELETE FROM NodalForces"));
  EXPECT_SENTENCE(database->Query(bstr(L"SELECT * FROM Nowhere").get(), none.put()),
                  HasSubstr("Nowhere"));
  EXPECT_EQ(count(L"NodalForces"), "3");
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

}  // namespace
