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

TEST_F(SaveTest, RecordGoesToTheRecordStore) {
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(host.journal.lines(),
              ElementsAre("db.RecordStore", "RecordStore.Save force BOOL:-1 BOOL:-1"));
  host.journal.clear();
  EXPECT_EQ(remove(), S_OK);
  EXPECT_THAT(host.journal.lines(), ElementsAre("db.RecordStore", "RecordStore.Delete force"));
}

TEST_F(SaveTest, FlagsArePassedOnAsTheyCame) {
  force_->Save(host.database.get(), omitted(), com::Variant(com::Bstr(L"maybe")));
  force_->Save(host.database.get(), com::Variant(), com::Variant(std::int16_t{7}));
  EXPECT_THAT(
      host.journal.lines_with("RecordStore.Save"),
      ElementsAre("RecordStore.Save force omitted \"maybe\"", "RecordStore.Save force empty I2:7"));
}

TEST_F(SaveTest, NothingElseHappensToTheRecord) {
  force_->put_Magnitude(5);
  save();
  long dirty = 0;
  force_->get_IsDirty(&dirty);
  EXPECT_EQ(dirty, 1);
  EXPECT_EQ(sql(force_, 5), "'', 0, 1, 0, 0, 0, 0, 0");
}

TEST_F(SaveTest, SuccessOfTheStoreComesBackAsItIs) {
  host.journal.fail("RecordStore.", S_FALSE);
  EXPECT_EQ(save(), S_FALSE);
  EXPECT_EQ(remove(), S_FALSE);
}

TEST_F(SaveTest, WithoutAModelDatabaseNothingIsCalled) {
  for (IDispatch* const none : {static_cast<IDispatch*>(nullptr), host.database->command.get()}) {
    EXPECT_EQ(force_->Save(none, yes(), yes()), E_POINTER);
    EXPECT_EQ(force_->Delete(none), E_POINTER);
  }
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(SaveTest, OtherFailureToGiveTheInterfaceIsPassedOn) {
  host.database->interface_query = E_ACCESSDENIED;
  EXPECT_EQ(save(), E_ACCESSDENIED);
  EXPECT_EQ(remove(), E_ACCESSDENIED);
}

TEST_F(SaveTest, MissingRecordStoreIsAnError) {
  host.database->store = nullptr;
  EXPECT_EQ(save(), E_POINTER);
  EXPECT_EQ(remove(), E_POINTER);
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

TEST_F(SaveTest, WordsReachALateBoundClient) {
  host.journal.fail("RecordStore.Delete", E_ABORT, L"The model is read-only.");
  com::Variant database(host.database.get());
  DISPPARAMS arguments{const_cast<VARIANT*>(&database.get()), nullptr, 1, 0};
  EXCEPINFO exception{};
  constexpr DISPID kDelete = 5;
  EXPECT_EQ(force_->Invoke(kDelete, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &arguments, nullptr,
                           &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, E_ABORT);
  const com::Bstr words = com::Bstr::adopt(exception.bstrDescription);
  EXPECT_EQ(words.view(), L"The model is read-only.");
}

}  // namespace
