// Opening and closing a model.

#include <windows.h>

#include "modeldb/sqlite/sqlite_engine.h"
#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::TemporaryFile;
using ::testing::HasSubstr;

class OpenTest : public model_test::ModelTest {
 protected:
  VARIANT_BOOL is_read_only() {
    VARIANT_BOOL result = VARIANT_TRUE;
    EXPECT_EQ(database->get_IsReadOnly(&result), S_OK);
    return result;
  }
  /// A batch is refused with the same words as a single change.
  void expect_no_change() {
    EXPECT_EQ(is_read_only(), VARIANT_TRUE);
    const auto forces = load_forces();
    ASSERT_TRUE(forces);
    const auto nothing = com::Variant::omitted();
    const auto words = HasSubstr("cannot be written: the file or its folder is write-protected");
    EXPECT_SENTENCE(save(make_force(2)), words);
    EXPECT_SENTENCE(forces->Save(database.get(), nothing, nothing), words);
    EXPECT_SENTENCE(forces->Delete(database.get()), words);
    EXPECT_EQ(count(L"NodalForces"), "1");
  }
};

TEST_F(OpenTest, ModelThatCannotBeWrittenIsReadAlone) {
  save(make_force(1));
  EXPECT_EQ(is_read_only(), VARIANT_FALSE);
  database->Close();

  ASSERT_TRUE(SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_READONLY));
  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  expect_no_change();
  database->Close();
  SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_NORMAL);

  // As in a folder where nothing may be made, there is no room for the journal.
  ASSERT_TRUE(CreateDirectoryW((file.path() + L"-journal").c_str(), nullptr));
  ASSERT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  expect_no_change();
  RemoveDirectoryW((file.path() + L"-journal").c_str());
  reopen();
  EXPECT_EQ(is_read_only(), VARIANT_FALSE);
  EXPECT_EQ(save(make_force(2)), S_OK) << model_test::last_sentence();
}

TEST_F(OpenTest, ModelThatLacksNothingOpensWhileAnotherProgramWrites) {
  save(make_force(1));
  execute(L"BEGIN TRANSACTION");
  const auto reader = create<ModelDatabase, IModelDatabaseFile>();
  EXPECT_EQ(reader->Open(bstr(file.path()).get()), S_OK) << model_test::last_sentence();
  reader->Close();
}

TEST_F(OpenTest, OlderModelThatCannotBeWrittenOpensForWhatItHas) {
  save(make_force(1));
  database->Close();
  {
    const auto older = modeldb::open_file(file.path());
    older->execute(L"DROP TABLE NodalProbes");
    older->execute(L"DROP TABLE NodalProbeDesignScenarios");
  }
  SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(open(file.path()), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForces"), "1");
  com::Ptr<IDispatch> probes;
  EXPECT_EQ(database->Load(bstr(L"NodalProbes").get(), com::Variant::omitted(),
                           com::Variant::omitted(), probes.put()),
            S_OK);
  SetFileAttributesW(file.path().c_str(), FILE_ATTRIBUTE_NORMAL);
  reopen();
  EXPECT_EQ(count(L"NodalProbes"), "0");
}

TEST_F(OpenTest, PathsThatCannotBeOpenedAreToldApart) {
  database->Close();
  const std::wstring drive = file.path().substr(0, 3);
  const std::wstring folder = file.path().substr(0, file.path().rfind(L'\\'));
  EXPECT_SENTENCE(open(drive), HasSubstr("is the root of a drive"));
  EXPECT_SENTENCE(open(L"\\\\."), HasSubstr("is that of a device"));
  EXPECT_SENTENCE(open(folder), HasSubstr("is that of a folder"));
  EXPECT_SENTENCE(open(folder + L"\\no\\x.orvdb"), HasSubstr("does not exist"));
  for (const std::size_t length : {300, 250}) {
    EXPECT_SENTENCE(open(folder + L"\\" + std::wstring(length, L'x')), HasSubstr("is too long"));
  }
  EXPECT_SENTENCE(open(folder + L"\\a?b.orvdb"),
                  HasSubstr("is write-protected, or the name is none for a file"));
}

TEST_F(OpenTest, FileOfAModelThatCannotBeMadeDoesNotStay) {
  const TemporaryFile other;
  const std::wstring journal = other.path() + L"-journal";
  ASSERT_TRUE(CreateDirectoryW(journal.c_str(), nullptr));
  const auto model = create<ModelDatabase, IModelDatabaseFile>();
  EXPECT_SENTENCE(model->Open(bstr(other.path()).get()), HasSubstr("write-protected"));
  EXPECT_EQ(GetFileAttributesW(other.path().c_str()), INVALID_FILE_ATTRIBUTES);
  RemoveDirectoryW(journal.c_str());
}

TEST_F(OpenTest, TableWhoseKeysAreUsedUpSaysSo) {
  for (const wchar_t* const greatest : {L"2147483647", L"9223372036854775807"}) {
    execute(L"INSERT INTO NodalForces (NodalForceID) VALUES (" + std::wstring(greatest) + L")");
    EXPECT_SENTENCE(save(make_force(1)), HasSubstr("The table NodalForces has used up its keys"));
  }
}

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
