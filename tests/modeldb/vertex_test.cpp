// Vertices: what is stored of them is only ever replaced by what a script gave.

#include <limits>

#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using ::testing::HasSubstr;

class VertexTest : public model_test::ModelTest {
 protected:
  /// A vertex at (1, 2, 3) in the model.
  void put_into_model(long id) {
    const auto vertex = create<Vertex, ICoordinateVertex>();
    vertex->put_ID(id);
    vertex->put_Description(bstr(L"corner").get());
    vertex->put_X(1);
    vertex->put_Y(2);
    vertex->put_Z(3);
    ASSERT_EQ(save(vertex), S_OK) << model_test::last_sentence();
  }
  /// A force, not saved, on the vertex of that number.
  com::Ptr<INodalForce> force_at(long id) {
    auto force = make_force(1);
    vertex_of(force)->put_ID(id);
    return force;
  }
  /// With coordinates in tenths, which every engine writes alike.
  std::string vertices() {
    return value(
        L"SELECT group_concat(VertexID || ': ' || CAST(10 * X AS INTEGER) || ' ' || CAST(10 * Y AS "
        L"INTEGER) || ' ' || CAST(10 * Z AS INTEGER) || ' ' || Description) FROM (SELECT * FROM "
        L"Vertices ORDER BY VertexID)");
  }
};

TEST_F(VertexTest, NewVertexGetsAKey) {
  const auto vertex = create<Vertex, ICoordinateVertex>();
  vertex->put_Y(0.1);
  ASSERT_EQ(save(vertex), S_OK) << model_test::last_sentence();
  EXPECT_EQ(id_of(vertex), 1);
  EXPECT_EQ(vertices(), "1: 0 1 0 ");
}

TEST_F(VertexTest, WhatWasNotPutStays) {
  put_into_model(12);
  const auto force = force_at(12);
  ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
  EXPECT_EQ(vertices(), "12: 10 20 30 corner");
  EXPECT_EQ(value(L"SELECT VertexID FROM NodalForces"), "12");
  double x = 0;
  vertex_of(force)->get_X(&x);
  EXPECT_EQ(x, 1);

  const auto other = make_force(1);
  vertex_of(other)->put_Y(7);
  vertex_of(other)->put_ID(12);
  ASSERT_EQ(save(other), S_OK);
  EXPECT_EQ(vertices(), "12: 10 70 30 corner");

  // Zero and nothing are values like any other.
  vertex_of(other)->put_Z(0);
  vertex_of(other)->put_Description(bstr(L"").get());
  ASSERT_EQ(save(other), S_OK);
  EXPECT_EQ(vertices(), "12: 10 70 0 ");

  // Somebody else moves the vertex; the first force only names it.
  ASSERT_EQ(execute(L"UPDATE Vertices SET X = 99 WHERE VertexID = 12"), S_OK);
  ASSERT_EQ(save(force), S_OK);
  EXPECT_EQ(vertices(), "12: 990 70 0 ");
}

TEST_F(VertexTest, PlaceThatNobodyGaveIsNotTheOrigin) {
  const auto force = force_at(12);
  ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
  ASSERT_EQ(save(force), S_OK);
  const auto unplaced = [this] { return value(L"SELECT COUNT(*) FROM Vertices WHERE X IS NULL"); };
  EXPECT_EQ(unplaced(), "1");
  const auto loaded = load_force(1);
  ASSERT_TRUE(loaded);
  vertex_of(loaded)->put_Description(bstr(L"tip").get());
  ASSERT_EQ(save(loaded), S_OK) << model_test::last_sentence();
  EXPECT_EQ(unplaced(), "1");
  EXPECT_EQ(value(L"SELECT Description FROM Vertices"), "tip");

  // The origin is a place like any other.
  vertex_of(loaded)->put_X(0);
  ASSERT_EQ(save(loaded), S_OK) << model_test::last_sentence();
  EXPECT_EQ(vertices(), "12: 0 0 0 tip");
  ASSERT_EQ(save(force), S_OK);
  EXPECT_EQ(vertices(), "12: 0 0 0 tip");
}

TEST_F(VertexTest, LoadedRecordMovesToAnotherVertexWithoutMovingTheVertex) {
  put_into_model(12);
  const auto made = make_force(1);
  vertex_of(made)->put_X(50);
  ASSERT_EQ(save(made), S_OK);
  const auto force = load_force(1);
  ASSERT_TRUE(force);
  double x = 0;
  vertex_of(force)->get_X(&x);
  EXPECT_EQ(x, 50);
  vertex_of(force)->put_ID(12);
  ASSERT_EQ(save(force), S_OK);
  EXPECT_EQ(vertices(), "12: 10 20 30 corner,13: 500 0 0 ");
}

TEST_F(VertexTest, CoordinateThatIsNoNumberIsRefused) {
  const auto vertex = create<Vertex, ICoordinateVertex>();
  vertex->put_Z(std::numeric_limits<double>::quiet_NaN());
  EXPECT_SENTENCE(save(vertex), HasSubstr("its Z is \"nan\""));
  EXPECT_EQ(count(L"Vertices"), "0");
}

TEST_F(VertexTest, RowIsTheSameByItsTextsAndWithoutThem) {
  const auto omitted = com::Variant::omitted();
  for (const double number : {0.0, -0.0, -3.0, 0.1, 9007199254740992.0, -2.5e-300, 1e300}) {
    const auto known = create<Vertex, ICoordinateVertex>();
    known->put_X(number);
    ASSERT_EQ(save(known), S_OK) << model_test::last_sentence();
    // Whoever hands it to the store himself has it asked for its texts.
    const auto told = create<Vertex, ICoordinateVertex>();
    told->put_X(number);
    ASSERT_EQ(store()->SaveRecord(told.get(), omitted, omitted), S_OK)
        << model_test::last_sentence();
    const std::wstring ids = std::to_wstring(id_of(known)) + L", " + std::to_wstring(id_of(told));
    EXPECT_EQ(value(L"SELECT count(DISTINCT X) FROM Vertices WHERE VertexID IN (" + ids + L")"),
              "1");

    const auto read = create<Vertex, ICoordinateVertex>();
    read->put_ID(id_of(known));
    ASSERT_EQ(save(read), S_OK) << model_test::last_sentence();
    double x = 1;
    read->get_X(&x);
    EXPECT_EQ(x, number);
  }
}

TEST_F(VertexTest, VertexThatRecordsStandOnStays) {
  put_into_model(12);
  ASSERT_EQ(save(force_at(12)), S_OK);
  ASSERT_EQ(save(force_at(12)), S_OK);
  const auto moment = create<NodalMoment, INodalMoment>();
  com::Ptr<IDispatch> its_vertex;
  moment->get_Vertex(its_vertex.put());
  its_vertex.query<IVertex>()->put_ID(12);
  ASSERT_EQ(save(moment), S_OK);

  const auto vertex = create<Vertex, ICoordinateVertex>();
  vertex->put_ID(12);
  EXPECT_SENTENCE(vertex->Delete(database.get()),
                  HasSubstr("Vertex 12 cannot be deleted, because records stand on it: "
                            "2 NodalForces (1, 2), NodalMoment 1."));
  for (const auto* const sql :
       {L"DELETE FROM Vertices", L"UPDATE Vertices SET VertexID = 13 WHERE VertexID = 12"}) {
    EXPECT_SENTENCE(execute(sql), HasSubstr("was not run: records stand on a vertex"));
  }
  EXPECT_EQ(vertices(), "12: 10 20 30 corner");

  ASSERT_EQ(execute(L"DELETE FROM NodalForces"), S_OK);
  ASSERT_EQ(moment->Delete(database.get()), S_OK);
  EXPECT_EQ(vertex->Delete(database.get()), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"Vertices"), "0");
}

TEST_F(VertexTest, VertexTakenToAnotherModelTakesItsCoordinates) {
  put_into_model(12);
  const auto force = force_at(12);
  ASSERT_EQ(save(force), S_OK);
  database->Close();
  const model_test::TemporaryModel other;
  ASSERT_EQ(open(other.path()), S_OK);
  ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
  EXPECT_EQ(vertices(), "12: 10 20 30 corner");
  database->Close();
}

}  // namespace
