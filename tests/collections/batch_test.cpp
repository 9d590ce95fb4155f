// Save and Delete of a collection: one transaction, one notification.

#include <gmock/gmock.h>

#include "tests/collections/collection.h"

namespace {

using fake::operator+;
using server::no;
using server::omitted;
using server::yes;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Lines = fake::Journal::Lines;

class BatchTest : public CollectionTest {
 protected:
  using Operation = std::function<HRESULT()>;

  HRESULT save() { return collection_->Save(host.database.get(), yes(), no()); }
  HRESULT remove() { return collection_->Delete(host.database.get()); }

  void add_two() {
    collection_->Clear();
    add("a", 5);
    add("b", 3);
  }

  void expect_calls(const Operation& operation, const Lines& all);
};

TEST_F(BatchTest, EmptyCollectionAsksNothingOfAnybody) {
  EXPECT_EQ(collection_->Save(nullptr, yes(), yes()), S_OK);
  EXPECT_EQ(collection_->Delete(nullptr), S_OK);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

const Lines kBegin{"db.RecordStore", "db.Connection", "RecordStore.EventsEnabled 0",
                   "Connection.Execute BEGIN TRANSACTION null 128"};
const Lines kEnd{"Connection.Execute COMMIT TRANSACTION null 128", "RecordStore.EventsEnabled -1"};

/// The calls of a batch of two records.
Lines batch_lines(const std::string& first, const std::string& second, const std::string& notice) {
  return kBegin +
         Lines{"db.RecordStore", "RecordStore." + first, "db.RecordStore",
               "RecordStore." + second} +
         kEnd + Lines{"RecordStore." + notice};
}

/// Runs the operation whole, and then with each call failing in turn. What a record calls is passed
/// over; a failure of anything else ends the batch, but for accessors, of which only the missing
/// object is noticed where it is needed.
void BatchTest::expect_calls(const Operation& operation, const Lines& all) {
  add_two();
  EXPECT_EQ(operation(), S_OK);
  EXPECT_THAT(host.journal.lines(), ElementsAreArray(all));

  /// What still happens after the call that fails.
  enum After { kNothing, kOneMore, kAll, kAllButTheNext };
  const struct {
    After after;
    HRESULT result;
  } failures[] = {
      {kOneMore, E_POINTER},   // the record store
      {kOneMore, E_POINTER},   // the connection
      {kNothing, E_ABORT},     // events off
      {kNothing, E_ABORT},     // begin
      {kAllButTheNext, S_OK},  // the first record, which asks for the record store
      {kAll, S_OK},            // and is saved
      {kAllButTheNext, S_OK},  // the second record
      {kAll, S_OK},            // likewise
      {kNothing, E_ABORT},     // commit
      {kNothing, E_ABORT},     // events on
      {kNothing, E_ABORT},     // the notification
  };
  ASSERT_EQ(std::size(failures), all.size());
  for (std::size_t index = 0; index < all.size(); ++index) {
    SCOPED_TRACE(all[index]);
    const auto& [after, result] = failures[index];
    Lines expected = all;
    if (after == kAllButTheNext) expected.erase(expected.begin() + static_cast<long>(index) + 1);
    if (after == kNothing) expected.resize(index + 1);
    if (after == kOneMore) expected.resize(index + 2);
    add_two();
    host.journal.fail_call(index + 1, E_ABORT, L"failed");
    EXPECT_EQ(operation(), result);
    if (result == E_ABORT) {
      EXPECT_EQ(fake::take_error_words(), "failed");
    }
    EXPECT_THAT(host.journal.lines(), ElementsAreArray(expected));
  }
}

TEST_F(BatchTest, SaveRunsInOneTransactionWithOneNotificationWhateverSingleCallFails) {
  expect_calls([&] { return save(); }, batch_lines("Save a BOOL:-1 BOOL:0", "Save b BOOL:-1 BOOL:0",
                                                   "RecordsSaved 19 1D from 0: 5 3"));
}

TEST_F(BatchTest, DeleteRunsInOneTransactionWithOneNotificationWhateverSingleCallFails) {
  expect_calls([&] { return remove(); },
               batch_lines("Delete a", "Delete b", "RecordsDeleted 19 1D from 0: 5 3"));
}

TEST_F(BatchTest, WordsOfARecordThatFailedAreNotTakenForThoseOfTheTransaction) {
  add_two();
  host.journal.fail("RecordStore.Save a", E_FAIL, L"of the record");
  host.journal.fail("Connection.Execute COMMIT", E_ABORT);
  EXPECT_EQ(save(), E_ABORT);
  EXPECT_EQ(fake::take_error_words(), "");
}

TEST_F(BatchTest, DeleteEmptiesTheCollectionOnceTheRecordsAreTold) {
  add_two();
  host.journal.fail("Connection.Execute BEGIN", E_ABORT);
  EXPECT_EQ(remove(), E_ABORT);
  EXPECT_EQ(count(), 2);
  host.journal.clear();
  host.journal.fail("Connection.Execute COMMIT", E_ABORT);
  EXPECT_EQ(remove(), E_ABORT);
  EXPECT_EQ(count(), 0);
  EXPECT_EQ(index_of(3), 1) << "deleted records are still looked up";
}

TEST_F(BatchTest, NewRecordsAreReportedByTheIdentifiersThatTheyGot) {
  add("new", 0);
  add("known", 7);
  add("newer", 0);
  const auto late = record("late", 0);
  add(late);
  long next = 100;
  host.store->on_save = [&](IPersistentObject& record) {
    long id = 0;
    record.get_ID(&id);
    if (id == 0 && &record != late.get()) record.put_ID(next++);
  };
  host.journal.on_call = [&](const std::string& call) {
    if (call.find("COMMIT") != std::string::npos) late.query<INodalForce>()->put_ID(200);
  };
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(host.journal.lines_with("RecordsSaved"),
              ElementsAre("RecordStore.RecordsSaved 19 1D from 0: 100 7 101 200"));
  EXPECT_EQ(index_of(100), -1);
  EXPECT_EQ(index_of(0), 0);
}

TEST_F(BatchTest, AnythingMayBeInTheCollectionTwiceOrOfAnotherKindOrNoRecord) {
  add(record<NodalProbe, INodalProbe>("probe", 8));
  add(com::Ptr<IDispatch>(host.command.get()));
  const auto twice = record("force", 9);
  add(twice);
  add(twice);
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(
      host.journal.lines_with("RecordStore.Save"),
      ElementsAre("RecordStore.Save probe BOOL:-1 BOOL:0", "RecordStore.Save force BOOL:-1 BOOL:0",
                  "RecordStore.Save force BOOL:-1 BOOL:0"));
  EXPECT_THAT(host.journal.lines_with("RecordsSaved"),
              ElementsAre("RecordStore.RecordsSaved 19 1D from 0: 8 0 9 9"));
  EXPECT_EQ(remove(), S_OK);
  EXPECT_THAT(host.journal.lines_with("RecordStore.Delete"),
              ElementsAre("RecordStore.Delete probe", "RecordStore.Delete force",
                          "RecordStore.Delete force"));
}

TEST_F(BatchTest, RecordsMayUseTheirCollectionWhileItSavesThem) {
  const Lines a = {"RecordStore.Save a BOOL:-1 BOOL:0"};
  const Lines b = {"RecordStore.Save b BOOL:-1 BOOL:0"};
  const auto late = record("c", 9);
  const struct {
    std::function<void()> at_first_save;
    Lines saved;
    std::string reported;
  } cases[] = {
      {[&] {
         const long before = host.objects_kept_by_others();
         collection_->Remove(0);
         EXPECT_EQ(host.objects_kept_by_others(), before) << "the record still runs";
       },
       a + b, " 3"},
      {[&] { collection_->Clear(); }, a, ""},
      {[&] { save(); }, a + a + b, " 5 3"},
      {[&] { remove(); }, a, ""},
      {[&] { collection_->Add(late.get()); }, a + b + Lines{"RecordStore.Save c BOOL:-1 BOOL:0"},
       " 5 3 9"},
  };
  for (const auto& [action, saved, reported] : cases) {
    add_two();
    bool done = false;
    host.store->on_save = [&](IPersistentObject&) {
      if (!std::exchange(done, true)) action();
    };
    EXPECT_EQ(save(), S_OK);
    EXPECT_EQ(host.journal.lines_with("RecordStore.Save"), saved);
    EXPECT_EQ(host.journal.lines().back(), "RecordStore.RecordsSaved 19 1D from 0:" + reported);
  }
}

}  // namespace
