// The collection of every kind.

#include "tests/host/server.h"
#include "tests/kinds/kind.h"

namespace {

com::Ptr<IPersistentObject> make_record(const Kind& kind) {
  return server::as_record(server::make(kind.record.clsid).get(), kind.record.own_interface);
}

class KindCollectionTest : public server::Test, public ::testing::WithParamInterface<Kind> {
 protected:
  /// A collection of the kind with two records in it, numbers 5 and 3.
  [[nodiscard]] com::Ptr<IPersistentCollection> make() const {
    const Class& own = GetParam().collection;
    com::Ptr<IPersistentCollection> collection;
    server::make(own.clsid)->QueryInterface(own.own_interface, collection.put_void());
    for (const long id : {5, 3}) {
      const auto record = make_record(GetParam());
      record->put_ID(id);
      collection->Add(record.get());
    }
    return collection;
  }
  [[nodiscard]] std::string notice(const std::string& what) const {
    return "RecordStore." + what + ' ' + std::to_string(GetParam().expected.collection_event) +
           " 1D from 0: 5 3";
  }
};

INSTANTIATE_TEST_SUITE_P(All, KindCollectionTest, ::testing::ValuesIn(all_kinds()),
                         ::testing::PrintToStringParamName());

TEST_P(KindCollectionTest, NotifiesWithTheCodeOfTheCollection) {
  const auto collection = make();
  EXPECT_EQ(collection->Save(host.database.get(), server::yes(), server::yes()), S_OK);
  EXPECT_EQ(host.journal.lines().back(), notice("RecordsSaved"));
  EXPECT_EQ(host.journal.lines_with("RecordStore.Save ").size(), 2U);
  EXPECT_EQ(collection->Delete(host.database.get()), S_OK);
  EXPECT_EQ(host.journal.lines().back(), notice("RecordsDeleted"));
  EXPECT_EQ(host.journal.lines_with("RecordStore.Delete ").size(), 2U);
}

TEST_P(KindCollectionTest, AcceptsAnythingAndGivesOutItsOwnKindOnly) {
  const auto collection = make();
  com::Ptr<IDispatch> item;
  EXPECT_EQ(collection->Item(0, item.put()), S_OK);
  com::Ptr<IUnknown> own;
  EXPECT_EQ(item->QueryInterface(GetParam().record.own_interface, own.put_void()), S_OK);
  for (const Kind& other : all_kinds()) {
    if (other.record.name == GetParam().record.name) continue;
    EXPECT_EQ(collection->Add(make_record(other).get()), S_OK);
    EXPECT_EQ(collection->Item(2, item.put()), E_NOINTERFACE) << other;
    collection->Remove(2);
  }
}

}  // namespace
