// Save and Delete: the way of a record to the host's record store.

#include <gmock/gmock.h>

#include "com/bstr.h"
#include "tests/host/server.h"

namespace {

using server::omitted;
using server::sql;
using server::yes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SaveTest : public server::Test {
 protected:
  void SetUp() override {
    force_ = server::make<NodalForce, INodalForce>();
    host.journal.name(force_.get(), "force");
    host.journal.clear();
  }
  HRESULT save() { return force_->Save(host.database.get(), yes(), yes()); }
  HRESULT remove() { return force_->Delete(host.database.get()); }

  com::Ptr<INodalForce> force_;
};

TEST_F(SaveTest, RecordGoesToTheRecordStoreAndIsNotTouched) {
  force_->put_Magnitude(5);
  EXPECT_EQ(save(), S_OK);
  EXPECT_EQ(remove(), S_OK);
  EXPECT_THAT(host.journal.lines(),
              ElementsAre("db.RecordStore", "RecordStore.Save force BOOL:-1 BOOL:-1",
                          "db.RecordStore", "RecordStore.Delete force"));
  EXPECT_EQ(server::dirty(force_), 1);
  EXPECT_EQ(sql(force_, 5), "'', 0, 1, 0, 0, 0, 0, 0");
}

TEST_F(SaveTest, WithoutAModelDatabaseNothingIsCalled) {
  for (IDispatch* const none : {static_cast<IDispatch*>(nullptr), host.command.get()}) {
    EXPECT_EQ(force_->Save(none, yes(), yes()), E_POINTER);
    EXPECT_EQ(force_->Delete(none), E_POINTER);
  }
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(SaveTest, ResultOfTheHostComesBackAsItIs) {
  const struct {
    std::function<void()> prepare;
    HRESULT result;
  } cases[] = {
      {[&] { host.journal.fail("RecordStore.", S_FALSE); }, S_FALSE},
      {[&] { host.database->store = nullptr; }, E_POINTER},
      {[&] { host.database->interface_query = E_ACCESSDENIED; }, E_ACCESSDENIED},
  };
  for (const auto& [prepare, result] : cases) {
    prepare();
    EXPECT_EQ(save(), result);
    EXPECT_EQ(remove(), result);
  }
}

TEST_F(SaveTest, FailureAndWordsOfEveryCallArrive) {
  for (const char* const call : {"db.RecordStore", "RecordStore."}) {
    host.journal.clear();
    host.journal.fail(call, E_ABORT, L"The model is read-only.");
    EXPECT_EQ(save(), E_ABORT);
    EXPECT_EQ(fake::take_error_words(), "The model is read-only.");
    EXPECT_EQ(remove(), E_ABORT);
    EXPECT_EQ(fake::take_error_words(), "The model is read-only.");
  }
  const com::Variant database(host.database.get());
  const auto outcome = server::LateBound(force_).call(L"Delete", {database});
  EXPECT_EQ(outcome.result, E_ABORT);
  EXPECT_EQ(outcome.words.view(), L"The model is read-only.");
}

TEST_F(SaveTest, WordsOfAnEarlierFailureNeverArrive) {
  fake::set_error_words(L"stale");
  EXPECT_EQ(force_->Save(nullptr, yes(), yes()), E_POINTER);
  EXPECT_EQ(fake::take_error_words(), "");

  host.journal.vouches = false;
  host.journal.fail("RecordStore.Save", E_ABORT);
  fake::set_error_words(L"stale");
  EXPECT_EQ(save(), E_ABORT);
  EXPECT_EQ(fake::take_error_words(), "");
}

}  // namespace
