// Who listens to the record store, and what they are told.

#include <limits>
#include <string>

#include "modeldb/sqlite/sqlite_engine.h"
#include "tests/modeldb/listener.h"

namespace {

using model_test::create;
using model_test::Listener;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr long kSuspend = 0;

class NotificationTest : public model_test::ModelTest {
 protected:
  NotificationTest() { EXPECT_EQ(advise(&listener), S_OK); }
  // The store lets its listeners go before they do.
  ~NotificationTest() override { database->Close(); }

  com::Ptr<IObservableRecordStore> observable() { return store().query<IObservableRecordStore>(); }
  HRESULT advise(IDispatch* object) { return observable()->Advise(object); }

  Listener listener;
  Listener other;
  Listener without_methods;
};

TEST_F(NotificationTest, CollectionIsReportedOnceWithItsIdsInOrder) {
  const auto known = make_force(1);
  ASSERT_EQ(save(known), S_OK);
  const auto forces = create<NodalForces, INodalForces>();
  for (const auto& force : {make_force(2), known, make_force(3)}) forces->Add(force.get());
  listener.calls.clear();
  ASSERT_EQ(save(forces), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsSaved 19 [2 1 3]"));
  listener.calls.clear();
  ASSERT_EQ(forces->Delete(database.get()), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsDeleted 19 [2 1 3]"));

  listener.calls.clear();
  const auto sets = create<LoadSets, ILoadSets>();
  sets->Add(make_load_set(L"Wind").get());
  sets->Add(make_load_set(L"Snow").get());
  ASSERT_EQ(save(sets), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsSaved 2 [1 2]"));

  listener.calls.clear();
  SAFEARRAYBOUND bounds[] = {{2, 0}, {1, 0}};
  com::Variant rows;
  com::Variant keys;
  rows.put()->parray = SafeArrayCreate(VT_R8, 2, bounds);
  com::mutable_address(rows)->vt = VT_ARRAY | VT_R8;
  const com::Variant column(com::Bstr(L"Magnitude"));
  ASSERT_EQ(database->AppendRows(com::Bstr(L"NodalForces").get(), column, rows, keys.put()), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordsSaved 19 [4 5]"));
}

TEST_F(NotificationTest, StepsThatAreUndoneAndRedoneAreTold) {
  ASSERT_EQ(save(make_force(1)), S_OK);
  ASSERT_EQ(save(make_force(2)), S_OK);
  listener.calls.clear();
  ASSERT_EQ(database->Undo(com::Variant(1)), S_OK) << model_test::last_sentence();
  ASSERT_EQ(database->Redo(com::Variant::omitted()), S_OK);
  EXPECT_THAT(listener.calls,
              ElementsAre("StepUndone 2 type 8", "StepUndone 1 type 8", "StepRedone 1 type 8"));
}

TEST_F(NotificationTest, FailedSaveIsNotReported) {
  const auto force = make_force(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(FAILED(save(force)));
  EXPECT_THAT(listener.calls, IsEmpty());
}

TEST_F(NotificationTest, FailuresOfABatchAreToldBeforeItAndStayThoseOfIt) {
  const auto forces = create<NodalForces, INodalForces>();
  forces->Add(make_force(std::numeric_limits<double>::quiet_NaN()).get());
  forces->Add(make_force(1).get());
  // The listener saves a batch of its own, once.
  const auto sets = create<LoadSets, ILoadSets>();
  sets->Add(make_load_set(L"Wind").get());
  listener.on_call = [&] {
    listener.on_call = nullptr;
    save(sets);
  };
  ASSERT_EQ(save(forces), S_OK);
  EXPECT_THAT(listener.calls, ElementsAre("RecordFailed 19 an object", "RecordsSaved 2 [1]",
                                          "RecordsSaved 19 [0 1]"));
  com::Ptr<IFailures> failures;
  database->get_Failures(failures.put());
  long count = -1;
  failures->get_Count(&count);
  EXPECT_EQ(count, 1);
}

TEST_F(NotificationTest, SuspensionHoldsUntilResumed) {
  ASSERT_EQ(store()->EventsEnabled(kSuspend), S_OK);
  save(make_force(1));
  EXPECT_THAT(listener.calls, IsEmpty());
  ASSERT_EQ(store()->EventsEnabled(-1), S_OK);
  save(make_force(2));
  EXPECT_THAT(listener.calls, ElementsAre("RecordSaved 1 2", "RecordSaved 19 2"));
}

TEST_F(NotificationTest, SuspensionEndsWithTheBatchThatBrokeOff) {
  // The collection suspends notification, then cannot begin its transaction.
  const auto forces = create<NodalForces, INodalForces>();
  forces->Add(make_force(0).get());
  const auto writer = modeldb::open_file(file.path());
  writer->transactions().begin();
  EXPECT_TRUE(FAILED(save(forces)));
  writer->close();
  save(make_force(1));
  EXPECT_THAT(listener.calls, ElementsAre("RecordSaved 1 1", "RecordSaved 19 1"));

  // As if it had broken off later.
  store()->EventsEnabled(kSuspend);
  execute(L"BEGIN TRANSACTION");
  save(make_force(2));
  execute(L"ROLLBACK TRANSACTION");
  EXPECT_EQ(listener.calls.size(), 2u);
  save(make_force(3));
  EXPECT_EQ(listener.calls.size(), 4u);
}

TEST_F(NotificationTest, ListenerThatFailsOrLacksAMethodHarmsNobody) {
  listener.result = E_FAIL;
  without_methods.has_methods = false;
  advise(&without_methods);
  advise(&other);
  ASSERT_EQ(save(make_force(1)), S_OK);
  EXPECT_EQ(other.calls.size(), 2u);
  EXPECT_EQ(count(L"NodalForces"), "1");
}

TEST_F(NotificationTest, ListenerIsToldOnceHoweverOftenItIsAdvised) {
  advise(&listener);
  save(make_force(1));
  EXPECT_EQ(listener.calls.size(), 2u);
  ASSERT_EQ(observable()->Unadvise(&listener), S_OK);
  save(make_force(2));
  EXPECT_EQ(listener.calls.size(), 2u);
}

TEST_F(NotificationTest, ListenerMaySaveAndClose) {
  const auto second = make_force(2);
  listener.on_call = [&] {
    listener.on_call = nullptr;
    EXPECT_EQ(save(second), S_OK);
    database->Close();
  };
  EXPECT_EQ(save(make_force(1)), S_OK);
  ASSERT_EQ(open(file.path()), S_OK);
  EXPECT_EQ(count(L"NodalForces"), "2");
}

TEST_F(NotificationTest, ListenerThatAlwaysSavesIsNotNotifiedWithoutEnd) {
  listener.on_call = [&] { EXPECT_EQ(save(make_load_set(L"Wind")), S_OK); };
  EXPECT_EQ(save(make_load_set(L"Snow")), S_OK);
  EXPECT_EQ(listener.calls.size(), 16u);
  EXPECT_EQ(count(L"LoadSets"), "17");
  // Once it has come back, it is notified as before.
  listener.on_call = nullptr;
  save(make_load_set(L"Ice"));
  EXPECT_EQ(listener.calls.size(), 17u);
}

TEST_F(NotificationTest, ClosingEndsListening) {
  reopen();
  save(make_force(1));
  EXPECT_THAT(listener.calls, IsEmpty());
}

}  // namespace
