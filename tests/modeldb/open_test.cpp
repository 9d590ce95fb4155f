// Opening and closing a model, and what is said when that goes wrong.

#include <windows.h>

#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::TemporaryFile;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class OpenTest : public model_test::ModelTest {};

TEST_F(OpenTest, NewModelHasATableForEveryKindAndItsLinks) {
  EXPECT_EQ(count(L"Vertices"), "0");
  EXPECT_EQ(count(L"NodalProbes"), "0");
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
  EXPECT_EQ(count(L"NodalRigidBoundaryConstraintSets"), "0");
  EXPECT_EQ(count(L"NodalProbeDesignScenarios"), "0");
}

TEST_F(OpenTest, ColumnsKeepWholeNumbersAndFractionsApart) {
  ASSERT_EQ(save(make_force(250)), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT typeof(Magnitude) FROM NodalForces"), "real");
  EXPECT_EQ(value(L"SELECT typeof(MultiplierTableID) FROM NodalForces"), "integer");
  EXPECT_EQ(value(L"SELECT typeof(Description) FROM NodalForces"), "text");
}

TEST_F(OpenTest, WhatWasSavedIsThereAfterReopening) {
  ASSERT_EQ(save(make_force(250)), S_OK);
  reopen();
  EXPECT_EQ(value(L"SELECT Magnitude FROM NodalForces"), "250");
}

TEST_F(OpenTest, ModelTellsItsState) {
  VARIANT_BOOL is_open = VARIANT_FALSE;
  VARIANT_BOOL is_modified = VARIANT_TRUE;
  com::Bstr location;
  database->get_IsOpen(&is_open);
  database->get_Modified(&is_modified);
  database->get_Location(location.put());
  EXPECT_EQ(is_open, VARIANT_TRUE);
  EXPECT_EQ(is_modified, VARIANT_FALSE);
  EXPECT_EQ(location.view(), file.path());

  save(make_force(1));
  database->get_Modified(&is_modified);
  EXPECT_EQ(is_modified, VARIANT_TRUE);

  database->Close();
  database->get_IsOpen(&is_open);
  database->get_Location(location.put());
  EXPECT_EQ(is_open, VARIANT_FALSE);
  EXPECT_EQ(location.view(), L"");
}

TEST_F(OpenTest, SecondOpenIsRefusedAndTheFirstModelStays) {
  const TemporaryFile other;
  EXPECT_SENTENCE(open(other.path()), HasSubstr("Close it before another is opened"));
  EXPECT_THAT(other.read(), IsEmpty());
  EXPECT_EQ(save(make_force(1)), S_OK);
}

TEST_F(OpenTest, TextFileIsRefusedAndKept) {
  database->Close();
  const TemporaryFile text(L".txt");
  const std::string content(4096, 'x');
  text.write(content);
  EXPECT_SENTENCE(open(text.path()), HasSubstr("orv_modeldb_test_"));
  EXPECT_EQ(text.read(), content);
  EXPECT_EQ(open(file.path()), S_OK);
}

TEST_F(OpenTest, FoldersAndMissingFoldersAreRefused) {
  database->Close();
  EXPECT_SENTENCE(open(L"C:\\windows"), HasSubstr("C:\\windows"));
  EXPECT_SENTENCE(open(L"C:\\no\\such\\folder\\model.orvdb"), HasSubstr("no\\such\\folder"));
  EXPECT_SENTENCE(open(L""), Not(IsEmpty()));
}

TEST_F(OpenTest, OdbcLocationIsRefused) {
  database->Close();
  EXPECT_SENTENCE(open(L"odbc:DSN=model"), HasSubstr("ODBC"));
}

TEST_F(OpenTest, FileInAnotherProgramsUseIsRefused) {
  database->Close();
  const HANDLE held = CreateFileW(file.path().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  EXPECT_SENTENCE(open(file.path()), HasSubstr("orv_modeldb_test_"));
  CloseHandle(held);
  EXPECT_EQ(open(file.path()), S_OK);
}

TEST_F(OpenTest, ModelOfANewerVersionIsRefused) {
  database->Close();
  // Offset 60 of an SQLite file holds the version of its schema.
  const HANDLE handle =
      CreateFileW(file.path().c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  SetFilePointer(handle, 60, nullptr, FILE_BEGIN);
  const char version[] = {0, 0, 0, 99};
  DWORD written = 0;
  WriteFile(handle, version, sizeof version, &written, nullptr);
  CloseHandle(handle);
  EXPECT_SENTENCE(open(file.path()), HasSubstr("newer version"));
}

TEST_F(OpenTest, ClosedModelAnswersWithASentence) {
  const auto force = make_force(1);
  const auto open_store = store();
  database->Close();
  com::Ptr<IDispatch> object;
  com::Ptr<IRecordStore> none;
  EXPECT_SENTENCE(database->get_Connection(object.put()), HasSubstr("Call Open"));
  EXPECT_SENTENCE(database->get_Command(object.put()), HasSubstr("Call Open"));
  EXPECT_SENTENCE(database->get_RecordStore(none.put()), HasSubstr("Call Open"));
  EXPECT_SENTENCE(database->Query(bstr(L"SELECT 1").get(), object.put()), HasSubstr("Call Open"));
  EXPECT_SENTENCE(database->Load(bstr(L"NodalForces").get(), com::Variant::omitted(), object.put()),
                  HasSubstr("Call Open"));
  EXPECT_SENTENCE(save(force), HasSubstr("Call Open"));
  EXPECT_SENTENCE(
      open_store->SaveRecord(force.get(), com::Variant::omitted(), com::Variant::omitted()),
      HasSubstr("closed"));
  EXPECT_EQ(database->Close(), S_OK);
}

TEST_F(OpenTest, LastReleaseClosesTheFile) {
  save(make_force(1));
  const auto store_that_stays = store();
  database.reset();
  EXPECT_TRUE(DeleteFileW(file.path().c_str()));
  database = create<ModelDatabase, IModelDatabaseFile>();
  EXPECT_EQ(open(file.path()), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "0");
}

TEST_F(OpenTest, ClosingRollsBackAnOpenTransaction) {
  ASSERT_EQ(execute(L"BEGIN TRANSACTION"), S_OK) << model_test::last_sentence();
  ASSERT_EQ(save(make_force(1)), S_OK);
  reopen();
  EXPECT_EQ(count(L"NodalForces"), "0");
}

TEST_F(OpenTest, TwoModelsAreOpenAtOnce) {
  const TemporaryFile other_file;
  const auto other = create<ModelDatabase, IModelDatabaseFile>();
  ASSERT_EQ(other->Open(bstr(other_file.path()).get()), S_OK);
  const auto force = make_force(7);
  ASSERT_EQ(save(force), S_OK);
  ASSERT_EQ(force->Save(other.get(), com::Variant::omitted(), com::Variant::omitted()), S_OK);
  other->Close();
  // The classes are still served to records: this model is open.
  EXPECT_EQ(save(make_force(8)), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "2");
}

}  // namespace
