// What a collection holds, apart from any database.

#include "tests/collections/collection.h"

namespace {

/// An object that is no record and does something when it goes.
class Watcher final : public fake::Object<IDispatch> {
 public:
  Watcher(fake::Journal& journal, std::function<void()> on_end)
      : Object(journal, "watcher"), on_end_(std::move(on_end)) {}
  ~Watcher() override { on_end_(); }

 private:
  std::function<void()> on_end_;
};

TEST_F(CollectionTest, NullAndIndexesOutsideAreRefused) {
  EXPECT_EQ(collection_->Add(nullptr), E_POINTER);
  EXPECT_EQ(count(), 0);
  add("a", 1);
  for (const int index : {-1, 1, INT_MIN, INT_MAX}) {
    IDispatch* found = host.database.get();
    EXPECT_EQ(collection_->Item(index, &found), E_INVALIDARG);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(collection_->Item(index, nullptr), E_INVALIDARG);
    EXPECT_EQ(collection_->Remove(index), E_INVALIDARG);
  }
  EXPECT_EQ(collection_->Item(0, nullptr), E_POINTER);
  EXPECT_EQ(collection_->get_Count(nullptr), E_POINTER);
  EXPECT_EQ(collection_->GetIndexById(1, nullptr), E_POINTER);
  EXPECT_EQ(count(), 1);
}

TEST_F(CollectionTest, ItemsThatComeAndGoKeepTheirOrder) {
  // As a queue: taken from the front, added at the end, more often than the collection is long.
  for (long id = 1; id <= 5; ++id) add(std::to_string(id), id);
  for (long id = 6; id <= 30; ++id) {
    ASSERT_EQ(collection_->Remove(0), S_OK);
    add(std::to_string(id), id);
    ASSERT_EQ(count(), 5);
    ASSERT_EQ(item(0), std::to_string(id - 4));
    ASSERT_EQ(item(4), std::to_string(id));
  }
  EXPECT_EQ(collection_->Remove(2), S_OK);
  EXPECT_EQ(item(2), "29");
}

TEST_F(CollectionTest, IdentifierIsThatOfTheTimeOfAdding) {
  const auto changing = record("a", 0);
  add(changing);
  changing.query<INodalForce>()->put_ID(6);
  EXPECT_EQ(index_of(0), 0);
  EXPECT_EQ(index_of(6), -1);
  // A removal forgets the identifier that the record has by then.
  EXPECT_EQ(collection_->Remove(0), S_OK);
  EXPECT_EQ(index_of(0), 0);
}

TEST_F(CollectionTest, RemovalMovesItemsDownButNotTheirRecordedPositions) {
  for (const long id : {1, 2, 3}) add(std::string(1, static_cast<char>('a' + id)), id);
  EXPECT_EQ(collection_->Remove(0), S_OK);
  EXPECT_EQ(count(), 2);
  EXPECT_EQ(item(0), "c");
  EXPECT_EQ(index_of(1), -1);
  EXPECT_EQ(index_of(2), 1);
  EXPECT_EQ(index_of(3), 2);
  EXPECT_EQ(collection_->Remove(1), S_OK);
  EXPECT_EQ(item(0), "c");
  EXPECT_EQ(index_of(3), -1);
}

TEST_F(CollectionTest, ItemThatUsesTheCollectionWhenItGoesFindsItWhole) {
  for (int way = 0; way < 3; ++way) {
    SCOPED_TRACE(way);
    bool gone = false;
    const auto watch = [&] {
      gone = true;
      EXPECT_LT(count(), 3);
      collection_->Clear();
    };
    add("a", 1);
    add(com::Ptr<IDispatch>(new Watcher(host.journal, watch)));
    add("b", 2);
    switch (way) {
      case 0:
        EXPECT_EQ(collection_->Remove(1), S_OK);
        break;
      case 1:
        EXPECT_EQ(collection_->Clear(), S_OK);
        break;
      case 2:
        EXPECT_EQ(collection_->Delete(host.database.get()), S_OK);
        break;
    }
    EXPECT_TRUE(gone);
    EXPECT_EQ(count(), 0);
  }
}

}  // namespace
