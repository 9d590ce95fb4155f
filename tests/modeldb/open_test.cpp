// Opening and closing a model.

#include <windows.h>

#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::TemporaryFile;
using ::testing::HasSubstr;

class OpenTest : public model_test::ModelTest {};

TEST_F(OpenTest, ColumnsKeepWholeNumbersAndFractionsApart) {
  ASSERT_EQ(save(make_force(250)), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT typeof(Magnitude) FROM NodalForces"), "real");
  EXPECT_EQ(value(L"SELECT typeof(MultiplierTableID) FROM NodalForces"), "integer");
  EXPECT_EQ(value(L"SELECT typeof(Description) FROM NodalForces"), "text");
}

TEST_F(OpenTest, ModelOfANewerVersionIsRefused) {
  database->Close();
  std::string content = file.read();
  content[63] = 99;               // the last byte of an SQLite file's schema version
  content[18] = content[19] = 2;  // an application may keep a write-ahead log
  file.write(content);
  EXPECT_SENTENCE(open(file.path()), HasSubstr("newer version"),
                  HasSubstr(model_test::narrow(file.path())));
  EXPECT_EQ(file.read(), content);
}

TEST_F(OpenTest, RecordStoreOfAClosedModelSaysSo) {
  const auto force = make_force(1);
  const auto held = store();
  database->Close();
  EXPECT_SENTENCE(held->SaveRecord(force.get(), com::Variant::omitted(), com::Variant::omitted()),
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
