// The record store: the order in which it calls a record, what it accepts of the record's texts,
// and that whatever fails leaves nothing behind.

#include <limits>
#include <utility>
#include <vector>

#include "tests/modeldb/model_test.h"
#include "tests/modeldb/record_double.h"

namespace {

using model_test::bstr;
using model_test::RecordDouble;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class RecordStoreTest : public model_test::ModelTest {
 protected:
  HRESULT save_record(IDispatch* record) {
    return store()->SaveRecord(record, com::Variant::omitted(), com::Variant::omitted());
  }
  /// Saves the record and expects to be refused with these words, the table as it was.
  void expect_refusal(const char* words) {
    const std::string before = count(L"NodalForces");
    EXPECT_SENTENCE(save_record(&record), HasSubstr(words));
    EXPECT_EQ(count(L"NodalForces"), before);
  }

  RecordDouble record;
};

TEST_F(RecordStoreTest, NewRecordIsInsertedThenGivenItsKeyThenLinked) {
  ASSERT_EQ(save_record(&record), S_OK) << model_test::last_sentence();
  EXPECT_THAT(record.calls,
              ElementsAre("FileOpHelper 1 true true", "SqlString 1", "SqlString 3", "SqlString 4",
                          "ID=1", "FileOpHelper 2 true true", "IsDirty=0"));
  EXPECT_EQ(value(L"SELECT Magnitude FROM NodalForces WHERE VertexID = 12 AND Vz = -1"), "250");
}

TEST_F(RecordStoreTest, KnownRecordIsUpdated) {
  save_record(&record);
  record.calls.clear();
  record.texts[6] =
      L"Description = 'd', VertexID = 3, MultiplierTableID = 1, Magnitude = 1e-3, "
      L"Vx = 0, Vy = 0, Vz = 0.5, CoordinateSystemID = 2";
  ASSERT_EQ(save_record(&record), S_OK) << model_test::last_sentence();
  EXPECT_THAT(record.calls, ElementsAre("FileOpHelper 1 true true", "SqlString 1", "SqlString 2",
                                        "SqlString 6", "FileOpHelper 2 true true", "IsDirty=0"));
  EXPECT_EQ(count(L"NodalForces"), "1");
  EXPECT_EQ(value(L"SELECT Magnitude * 1000 + Vz FROM NodalForces"), "1.5");
}

TEST_F(RecordStoreTest, RecordWithAnIdThatTheModelLacksIsInsertedUnderIt) {
  record.id = 77;
  ASSERT_EQ(save_record(&record), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT NodalForceID FROM NodalForces"), "77");
}

TEST_F(RecordStoreTest, DeletionTellsTheRecordFirst) {
  save_record(&record);
  record.calls.clear();
  ASSERT_EQ(store()->DeleteRecord(&record), S_OK) << model_test::last_sentence();
  EXPECT_THAT(record.calls, ElementsAre("SqlString 1", "SqlString 2", "FileOpHelper 3 true true"));
  EXPECT_EQ(count(L"NodalForces"), "0");
  EXPECT_EQ(record.id, 1);
}

TEST_F(RecordStoreTest, DeletedKeyIsNotGivenAgain) {
  save_record(&record);
  store()->DeleteRecord(&record);
  record.id = 0;
  save_record(&record);
  EXPECT_EQ(record.id, 2);
}

TEST_F(RecordStoreTest, DescriptionIsBoundAsItStands) {
  for (const std::wstring description :
       {L"Bob's load", L"'", L"''", L"a', 0, 0, 0, 0, 0, 0, 0); DROP TABLE NodalForces; --",
        L"'||(SELECT Description FROM LoadSets)||'", L"x', 1, 1, 1, 1, 1, 1, 1), ('y",
        L"%s ? :a @b", L"/*", L"\u00e4\u20ac\U0001F600"}) {
    record.id = 0;
    record.description = description;
    record.texts[4] = L"'" + description + L"', 12, 1, 250, 0, 0, -1, 0";
    ASSERT_EQ(save_record(&record), S_OK) << model_test::last_sentence();
    EXPECT_EQ(value(L"SELECT Description FROM NodalForces ORDER BY NodalForceID DESC"),
              model_test::narrow(description));
  }
  EXPECT_EQ(count(L"NodalForces"), "9");
}

TEST_F(RecordStoreTest, TextBeyondTheDescriptionMustBeNumbers) {
  for (const wchar_t* const values :
       {L"'e', 12, 1, 250, 0, 0, -1, 0", L"'d', 12, 1, 250, 0, 0, -1, 0, 0",
        L"'d', 12, 1, 250, 0, 0, -1", L"'d', 12, 1, 250, 0, 0, -1, (SELECT 1)",
        L"'d', 12, 1, 250, 0, 0, -1, 0 -- ", L"'d', 12, 1, 250, 0, 0, -1/*x*/, 0",
        L"'d', 12, 1, 250, 0, 0, -1, 0; DELETE FROM NodalForces",
        L"'d', 12, 1, 250, 0, 0, -1, 0), ('d', 1, 1, 1, 1, 1, 1",
        L"'d', 12, 1, 250, 0, 0, -1, 0) RETURNING (1", L"'d' || 'e', 12, 1, 250, 0, 0, -1, 0",
        L"'d', 12, 1, 0x10, 0, 0, -1, 0", L"'d', 12, 1, 250, 0, 0, 1 + 1, 0",
        L"'d', 12, 1, NULL, 0, 0, -1, 0", L"'d', 12, 1, 'e', 0, 0, -1, 0",
        L"'d', 12, 1, 1e999, 0, 0, -1, 0", L"'d', 12, 1, --1\n250, 0, 0, -1, 0",
        L"'d', 12, 1, 250, 0, 0, -1,", L"", L"'d'"}) {
    SCOPED_TRACE(model_test::narrow(values));
    record.texts[4] = values;
    expect_refusal("NodalForce");
  }
  record.id = 1;
  const std::wstring good = record.texts[6];
  for (const auto& [part, replacement] : std::vector<std::pair<std::wstring, std::wstring>>{
           {L"Vz = -1", L"Vz = Vy"},
           {L"Vz = -1", L"Vz == -1"},
           {L"Vz = -1", L"Vz = -1/**/"},
           {L"Vz = -1", L"\"Vz\" = -1"},
           {L"Vx = 0, Vy", L"Vy = 0, Vx"},
           {L"ID = 0", L"ID = 0 WHERE 1"},
           {L"ID = 0", L"ID = 0 -- "},
           {L"Description = 'd'", L"Description = d"},
           {L"Description =", L"Description /**/ ="},
           {L"VertexID = 12", L"NodalForceID = 12"}}) {
    record.texts[6] = std::wstring(good).replace(good.find(part), part.size(), replacement);
    SCOPED_TRACE(model_test::narrow(record.texts[6]));
    expect_refusal("NodalForce 1");
  }
}

TEST_F(RecordStoreTest, ValueThatIsNoNumberIsNamed) {
  record.texts[4] = L"'d', 12, 1, nan, 0, 0, -1, 0";
  expect_refusal("its Magnitude is \"nan\"");
  record.texts[4] = L"'d', 12, 1, 250, 0, 0, -inf, 0";
  expect_refusal("its Vz is \"-inf\"");
  record.id = 4;
  record.texts[6] =
      L"Description = 'd', VertexID = 3, MultiplierTableID = 1, Magnitude = 1, "
      L"Vx = inf, Vy = 0, Vz = 0.5, CoordinateSystemID = 2";
  expect_refusal("NodalForce 4 cannot be saved: its Vx is \"inf\"");
}

TEST_F(RecordStoreTest, TableAndColumnsMustBeThoseOfTheKind) {
  record.texts[1] = L"NodalMoments";
  expect_refusal("NodalMoments");
  record.texts[1] = L"NodalForces";
  record.texts[3] =
      L"Description, VertexID, MultiplierTableID, Magnitude, Vy, Vx, Vz, CoordinateSystemID";
  expect_refusal("Vy, Vx");
  record.id = 1;
  record.texts[2] = L"VertexID";
  expect_refusal("VertexID");
}

TEST_F(RecordStoreTest, RowGoesWhenItsLinksFail) {
  ASSERT_EQ(execute(L"INSERT INTO LoadSets (LoadSetID) VALUES (1)"), S_OK);
  record.file_operations[2] = [&](IDispatch*) {
    EXPECT_EQ(execute(L"INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) VALUES (1, 1)"),
              S_OK);
    return E_FAIL;
  };
  EXPECT_SENTENCE(save_record(&record), HasSubstr("0x80004005 while saving its sets"));
  EXPECT_EQ(count(L"NodalForces"), "0");
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
  EXPECT_EQ(record.id, 0);
  EXPECT_EQ(record.dirty, 1);
}

TEST_F(RecordStoreTest, FailureInATransactionUndoesThatRecordAlone) {
  ASSERT_EQ(execute(L"BEGIN TRANSACTION"), S_OK);
  ASSERT_EQ(save(make_force(1)), S_OK);
  record.file_operations[2] = [](IDispatch*) { return E_FAIL; };
  EXPECT_SENTENCE(save_record(&record), HasSubstr("0x80004005"));
  ASSERT_EQ(save(make_force(2)), S_OK);
  ASSERT_EQ(execute(L"COMMIT TRANSACTION"), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "2");
}

TEST_F(RecordStoreTest, FailedDeletionKeepsTheRow) {
  save_record(&record);
  record.file_operations[3] = [](IDispatch*) { return E_ACCESSDENIED; };
  EXPECT_SENTENCE(store()->DeleteRecord(&record), HasSubstr("0x80070005 while deleting"));
  EXPECT_EQ(count(L"NodalForces"), "1");
}

TEST_F(RecordStoreTest, VertexSavedWithARecordThatFailsIsNewAgain) {
  const auto force = make_force(1);
  vertex_of(force)->put_X(3);
  vertex_of(force)->put_Y(1);
  force->put_Magnitude(std::numeric_limits<double>::infinity());
  EXPECT_SENTENCE(save(force), HasSubstr("its Magnitude is \"inf\""));
  EXPECT_EQ(count(L"Vertices"), "0");
  EXPECT_EQ(id_of(vertex_of(force)), 0);

  force->put_Magnitude(5);
  ASSERT_EQ(save(force), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT X + Y FROM Vertices"), "4");
  EXPECT_EQ(value(L"SELECT VertexID FROM NodalForces"), value(L"SELECT VertexID FROM Vertices"));
}

TEST_F(RecordStoreTest, ModelClosedInTheMiddleOfASaveFailsTheSave) {
  record.file_operations[2] = [&](IDispatch*) { return database->Close(); };
  EXPECT_TRUE(FAILED(save_record(&record)));
  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForces"), "0");
}

}  // namespace
