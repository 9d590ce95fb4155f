// Collections when memory runs out.

#include "tests/host/out_of_memory.h"

#include "tests/collections/collection.h"

namespace {

using server::OutOfMemory;
using server::with_each_allocation_failing;
using server::yes;

class CollectionMemoryTest : public CollectionTest {
 protected:
  void refill() {
    CollectionTest::SetUp();
    for (const long id : {1, 2, 3}) add("force", id);
  }
  /// A failing batch notifies nobody; a record that fails does not fail the batch.
  void expect_notice_unless_failed(HRESULT result, const std::string& notice) {
    EXPECT_TRUE(result == S_OK || result == E_OUTOFMEMORY);
    EXPECT_EQ(host.journal.lines_with(notice).empty(), FAILED(result));
    EXPECT_EQ(host.journal.lines_with("BEGIN").size(), host.journal.lines_with("COMMIT").size())
        << "a transaction stays open";
    host.journal.clear();
    collection_.reset();
  }
};

TEST_F(CollectionMemoryTest, ItemIsAddedWholeOrNotAtAll) {
  with_each_allocation_failing([&](OutOfMemory& memory) {
    refill();
    const auto more = record("more", 4);
    const HRESULT result = memory.during([&] { return collection_->Add(more.get()); });
    EXPECT_EQ(result, memory.expected());
    EXPECT_EQ(count(), memory.ran_out() ? 3 : 4);
    EXPECT_EQ(index_of(4), memory.ran_out() ? -1 : 3);
    host.journal.clear();
    collection_.reset();
  });
}

TEST_F(CollectionMemoryTest, SaveFailsOrNotifies) {
  with_each_allocation_failing([&](OutOfMemory& memory) {
    refill();
    const HRESULT result =
        memory.during([&] { return collection_->Save(host.database.get(), yes(), yes()); });
    EXPECT_EQ(count(), 3);
    expect_notice_unless_failed(result, "RecordsSaved");
  });
}

TEST_F(CollectionMemoryTest, DeleteFailsOrNotifies) {
  with_each_allocation_failing([&](OutOfMemory& memory) {
    refill();
    const HRESULT result = memory.during([&] { return collection_->Delete(host.database.get()); });
    expect_notice_unless_failed(result, "RecordsDeleted");
  });
}

TEST_F(CollectionMemoryTest, TakingAwayNeedsNoMemory) {
  for (const long id : {1, 2, 3}) add("force", id);
  OutOfMemory memory(1, OutOfMemory::kEnd);
  EXPECT_EQ(memory.during([&] { return collection_->Remove(1); }), S_OK);
  EXPECT_EQ(memory.during([&] { return collection_->Clear(); }), S_OK);
  EXPECT_EQ(count(), 0);
}

}  // namespace
