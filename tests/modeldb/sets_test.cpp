// Sets and their collections, alone and with the records that belong to them.

#include "tests/modeldb/model_test.h"

namespace {

using model_test::bstr;
using model_test::create;
using model_test::TemporaryModel;
using ::testing::HasSubstr;

class SetsTest : public model_test::ModelTest {};

TEST_F(SetsTest, SetNamedByItsIdAloneKeepsItsName) {
  const auto wind = make_load_set(L"Wind");
  ASSERT_EQ(save(wind), S_OK);
  const auto force = make_force(1);
  const auto set = create<LoadSet, ILoadSet>();
  set->put_ID(1);
  load_sets_of(force)->Add(set.get());
  ASSERT_EQ(save(force), S_OK);
  EXPECT_EQ(value(L"SELECT Description FROM LoadSets"), "Wind");
}

TEST_F(SetsTest, SetOfAnotherModelIsNotTakenForAnotherOne) {
  const TemporaryModel other_file;
  const auto other = create<ModelDatabase, IModelDatabaseFile>();
  ASSERT_EQ(other->Open(bstr(other_file.path()).get()), S_OK);
  const auto save_in_other = [&](const auto& object) {
    return object->Save(other.get(), com::Variant::omitted(), com::Variant::omitted());
  };
  const auto wind = make_load_set(L"Wind");
  ASSERT_EQ(save_in_other(wind), S_OK);
  ASSERT_EQ(save(make_load_set(L"Dead")), S_OK);
  const auto force = make_force(1);
  load_sets_of(force)->Add(wind.get());
  const auto conflict = ::testing::AllOf(HasSubstr("LoadSet 1 of the model"),
                                         HasSubstr("is \"Wind\""), HasSubstr("is \"Dead\""));
  EXPECT_SENTENCE(save(force), conflict);
  EXPECT_SENTENCE(wind->Delete(database.get()), conflict);
  wind->put_Description(bstr(L"Gale").get());
  EXPECT_SENTENCE(save(wind), conflict);
  EXPECT_EQ(value(L"SELECT group_concat(Description) FROM LoadSets"), "Dead");
  EXPECT_EQ(count(L"NodalForces"), "0");

  // As a new set, and where its number is free or stands for the same.
  wind->put_ID(0);
  EXPECT_EQ(save(force), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT group_concat(LoadSetID) FROM NodalForceLoadSets"), "2");
  EXPECT_EQ(save_in_other(wind), S_OK) << model_test::last_sentence();
  wind->put_Description(bstr(L"Storm").get());
  EXPECT_EQ(save(wind), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT group_concat(Description) FROM LoadSets"), "Dead,Storm");
  other->Close();
}

TEST_F(SetsTest, DeletedSetTakesItsLinksAlong) {
  const auto wind = make_load_set(L"Wind");
  const auto force = make_force(1);
  load_sets_of(force)->Add(wind.get());
  ASSERT_EQ(save(force), S_OK);
  execute(L"BEGIN TRANSACTION");
  ASSERT_EQ(wind->Delete(database.get()), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(count(L"NodalForceLoadSets"), "1");
  ASSERT_EQ(execute(L"DELETE FROM LoadSets"), S_OK) << model_test::last_sentence();

  // Another set of that number inherits nothing.
  const auto snow = make_load_set(L"Snow");
  snow->put_ID(id_of(wind));
  ASSERT_EQ(save(snow), S_OK);
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
}

TEST_F(SetsTest, LinksStayWithTheirRecordWhateverItsKey) {
  const auto force = make_force(1);
  load_sets_of(force)->Add(make_load_set(L"Wind").get());
  ASSERT_EQ(save(force), S_OK);
  ASSERT_EQ(execute(L"UPDATE NodalForces SET NodalForceID = 50"), S_OK);
  EXPECT_EQ(count(L"NodalForceLoadSets WHERE NodalForceID = 50"), "1");
  ASSERT_EQ(execute(L"DELETE FROM NodalForces"), S_OK) << model_test::last_sentence();
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
}

TEST_F(SetsTest, LinkToASetThatTheModelLacksIsRefused) {
  const auto set = make_load_set(L"Wind");
  const auto force = make_force(1);
  load_sets_of(force)->Add(set.get());
  const auto save_without_sets = [&] {
    return force->Save(database.get(), com::Variant::boolean(true), com::Variant::boolean(false));
  };
  EXPECT_SENTENCE(save_without_sets(), HasSubstr("The new NodalForce cannot be saved: it belongs "
                                                 "to a new LoadSet that was not saved."));
  set->put_ID(7);
  EXPECT_SENTENCE(save_without_sets(), HasSubstr("LoadSet 7, which the model does not have."));
  EXPECT_EQ(count(L"NodalForces"), "0");
  EXPECT_EQ(count(L"NodalForceLoadSets"), "0");
  EXPECT_SENTENCE(
      execute(L"INSERT INTO NodalForceLoadSets (LoadSetID, NodalForceID) VALUES (7, 1)"),
      HasSubstr("link to a row that the model does not have"));
  ASSERT_EQ(save(set), S_OK);
  EXPECT_EQ(save_without_sets(), S_OK) << model_test::last_sentence();
}

TEST_F(SetsTest, CollectionSavesAllOfItAndDeletesAllOfIt) {
  const auto sets = create<ConstraintSets, IConstraintSets>();
  for (int index = 0; index < 3; ++index) {
    sets->Add(create<ConstraintSet, IConstraintSet>().get());
  }
  ASSERT_EQ(save(sets), S_OK) << model_test::last_sentence();
  EXPECT_EQ(value(L"SELECT group_concat(ConstraintSetID) FROM ConstraintSets"), "1,2,3");
  ASSERT_EQ(sets->Delete(database.get()), S_OK);
  long size = -1;
  sets->get_Count(&size);
  EXPECT_EQ(size, 0);
  EXPECT_EQ(count(L"ConstraintSets"), "0");
}

TEST_F(SetsTest, WrongObjectsAreRefused) {
  const auto sets = create<LoadSets, ILoadSets>();
  EXPECT_EQ(sets->Add(nullptr), E_POINTER);
  const auto other = create<ConstraintSet, IConstraintSet>();
  // What a script can pass: some other object, whatever its interface.
  EXPECT_SENTENCE(sets->Add(reinterpret_cast<ILoadSet*>(other.get())),
                  HasSubstr("not of this collection's kind"));
  sets->Add(make_load_set(L"Wind").get());
  EXPECT_SENTENCE(sets->Save(nullptr, com::Variant::omitted(), com::Variant::omitted()),
                  HasSubstr("open Orv_ModelDb.ModelDatabase"));
}

}  // namespace
