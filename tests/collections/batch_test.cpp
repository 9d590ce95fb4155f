// Save and Delete of a collection: one transaction, one notification.

#include <gmock/gmock.h>

#include "tests/collections/collection.h"

namespace {

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

  /// What happens when the call with this number fails, and what is reported.
  void expect_when_failing(const Operation& operation, std::size_t number, const Lines& lines,
                           HRESULT result) {
    add_two();
    host.journal.fail_call(number, E_ABORT, L"failed");
    EXPECT_EQ(operation(), result);
    if (result == E_ABORT) {
      EXPECT_EQ(fake::take_error_words(), "failed");
    }
    EXPECT_THAT(host.journal.lines(), ElementsAreArray(lines));
  }
  void expect_each_failure(const Operation& operation, const Lines& all);
};

TEST_F(BatchTest, EmptyCollectionAsksNothingOfAnybody) {
  EXPECT_EQ(collection_->Save(nullptr, yes(), yes()), S_OK);
  EXPECT_EQ(collection_->Delete(nullptr), S_OK);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(BatchTest, WithoutAModelDatabaseNothingIsDone) {
  add_two();
  for (IDispatch* const none : {static_cast<IDispatch*>(nullptr), host.command.get()}) {
    EXPECT_EQ(collection_->Save(none, yes(), yes()), E_POINTER);
    EXPECT_EQ(collection_->Delete(none), E_POINTER);
  }
  EXPECT_EQ(count(), 2);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

const Lines kBegin{"db.RecordStore", "db.Connection", "RecordStore.EventsEnabled 0",
                   "Connection.Execute BEGIN TRANSACTION null 128"};
const Lines kEnd{"Connection.Execute COMMIT TRANSACTION null 128", "RecordStore.EventsEnabled -1"};

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// The calls of a batch of two records.
Lines batch_lines(const std::string& first, const std::string& second, const std::string& notice) {
  return kBegin +
         Lines{"db.RecordStore", "RecordStore." + first, "db.RecordStore",
               "RecordStore." + second} +
         kEnd + Lines{"RecordStore." + notice};
}

/// Fails each call in turn. What a record calls is passed over; a failure of anything else ends the
/// batch, but for accessors, of which only the missing object is noticed where it is needed.
void BatchTest::expect_each_failure(const Operation& operation, const Lines& all) {
  const auto first = [&](std::size_t number) {
    return Lines(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(number));
  };
  const auto without = [&](std::size_t number) {
    Lines lines = all;
    lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(number - 1));
    return lines;
  };
  expect_when_failing(operation, 1, first(2), E_POINTER);
  expect_when_failing(operation, 2, first(3), E_POINTER);
  expect_when_failing(operation, 3, first(3), E_ABORT);
  expect_when_failing(operation, 4, first(4), E_ABORT);
  expect_when_failing(operation, 5, without(6), S_OK);
  expect_when_failing(operation, 6, all, S_OK);
  expect_when_failing(operation, 7, without(8), S_OK);
  expect_when_failing(operation, 8, all, S_OK);
  expect_when_failing(operation, 9, first(9), E_ABORT);
  expect_when_failing(operation, 10, first(10), E_ABORT);
  expect_when_failing(operation, 11, first(11), E_ABORT);
}

TEST_F(BatchTest, SaveRunsInOneTransactionWithOneNotificationWhateverSingleCallFails) {
  const Lines all = batch_lines("Save a BOOL:-1 BOOL:0", "Save b BOOL:-1 BOOL:0",
                                "RecordsSaved 19 1D from 0: 5 3");
  add_two();
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(host.journal.lines(), ElementsAreArray(all));
  EXPECT_EQ(count(), 2);
  expect_each_failure([&] { return save(); }, all);
}

TEST_F(BatchTest, DeleteRunsInOneTransactionWithOneNotificationWhateverSingleCallFails) {
  const Lines all = batch_lines("Delete a", "Delete b", "RecordsDeleted 19 1D from 0: 5 3");
  add_two();
  EXPECT_EQ(remove(), S_OK);
  EXPECT_THAT(host.journal.lines(), ElementsAreArray(all));
  expect_each_failure([&] { return remove(); }, all);
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

TEST_F(BatchTest, FlagsGoToEveryRecordAsTheyCame) {
  add_two();
  collection_->Save(host.database.get(), omitted(), com::Variant(com::Bstr(L"maybe")));
  EXPECT_THAT(
      host.journal.lines_with("RecordStore.Save"),
      ElementsAre("RecordStore.Save a omitted \"maybe\"", "RecordStore.Save b omitted \"maybe\""));
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

TEST_F(BatchTest, RecordThatWasAddedTwiceIsSavedAndReportedTwice) {
  const auto twice = record("a", 5);
  add(twice);
  add(twice);
  save();
  EXPECT_EQ(host.journal.lines_with("RecordStore.Save").size(), 2U);
  EXPECT_THAT(host.journal.lines_with("RecordsSaved"),
              ElementsAre("RecordStore.RecordsSaved 19 1D from 0: 5 5"));
}

TEST_F(BatchTest, RecordsOfOtherKindsAreSavedAndOtherObjectsPassedOver) {
  add(record<NodalProbe, INodalProbe>("probe", 8));
  add(com::Ptr<IDispatch>(host.command.get()));
  add("force", 9);
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(host.journal.lines_with("RecordStore.Save"),
              ElementsAre("RecordStore.Save probe BOOL:-1 BOOL:0",
                          "RecordStore.Save force BOOL:-1 BOOL:0"));
  EXPECT_THAT(host.journal.lines_with("RecordsSaved"),
              ElementsAre("RecordStore.RecordsSaved 19 1D from 0: 8 0 9"));
  EXPECT_EQ(remove(), S_OK);
  EXPECT_THAT(host.journal.lines_with("RecordStore.Delete"),
              ElementsAre("RecordStore.Delete probe", "RecordStore.Delete force"));
}

/// What a record does to its collection while the collection saves it.
class ReentranceTest : public BatchTest {
 protected:
  /// Runs `action` once, at the first record that is saved.
  void at_first_save(std::function<void()> action) {
    host.store->on_save = [action, done = false](IPersistentObject&) mutable {
      if (!std::exchange(done, true)) action();
    };
  }
  [[nodiscard]] Lines saved() const { return host.journal.lines_with("RecordStore.Save"); }
};

const std::string kSaveA = "RecordStore.Save a BOOL:-1 BOOL:0";
const std::string kSaveB = "RecordStore.Save b BOOL:-1 BOOL:0";

TEST_F(ReentranceTest, RecordThatLeavesTheCollectionIsNotReported) {
  add_two();
  at_first_save([&] {
    const long before = host.objects_kept_by_others();
    collection_->Remove(0);
    EXPECT_EQ(host.objects_kept_by_others(), before) << "the record still runs";
  });
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(saved(), ElementsAre(kSaveA, kSaveB));
  EXPECT_EQ(host.journal.lines().back(), "RecordStore.RecordsSaved 19 1D from 0: 3");
}

TEST_F(ReentranceTest, CollectionThatIsClearedMeanwhileReportsNothing) {
  add_two();
  at_first_save([&] { collection_->Clear(); });
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(saved(), ElementsAre(kSaveA));
  EXPECT_EQ(host.journal.lines().back(), "RecordStore.RecordsSaved 19 1D from 0:");
}

TEST_F(ReentranceTest, InnerSaveEndsTheOuterLoop) {
  add_two();
  at_first_save([&] { save(); });
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(saved(), ElementsAre(kSaveA, kSaveA, kSaveB));
  EXPECT_EQ(host.journal.lines_with("COMMIT").size(), 2U);
}

TEST_F(ReentranceTest, InnerDeleteLeavesNothingToSave) {
  add_two();
  at_first_save([&] { remove(); });
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(saved(), ElementsAre(kSaveA));
  EXPECT_EQ(count(), 0);
}

TEST_F(ReentranceTest, RecordThatIsAddedMeanwhileIsSavedToo) {
  add("a", 5);
  const auto late = record("b", 3);
  at_first_save([&] { collection_->Add(late.get()); });
  EXPECT_EQ(save(), S_OK);
  EXPECT_THAT(saved(), ElementsAre(kSaveA, kSaveB));
}

}  // namespace
