#pragma once

#include <string>
#include <vector>

#include "tests/host/server.h"

/// Base of tests of one collection, of forces; every kind's collection is the same class template.
class CollectionTest : public server::Test {
 protected:
  void SetUp() override {
    server::make(__uuidof(NodalForces))
        ->QueryInterface(__uuidof(INodalForces), collection_.put_void());
  }

  /// A new record of Class, named in the journal.
  template <class Class = NodalForce, class Interface = INodalForce>
  com::Ptr<IDispatch> record(const std::string& name, long id) {
    const auto made = server::make<Class, Interface>();
    made->put_ID(id);
    host.journal.name(made.get(), name);
    return com::Ptr<IDispatch>(made.get());
  }
  /// Adds an object and forgets what the journal noted of it.
  void add(const std::string& name, long id) { add(record(name, id)); }
  void add(const com::Ptr<IDispatch>& object) {
    EXPECT_EQ(collection_->Add(object.get()), S_OK);
    host.journal.clear();
  }

  [[nodiscard]] long count() const {
    long number = -1;
    EXPECT_EQ(collection_->get_Count(&number), S_OK);
    return number;
  }
  [[nodiscard]] long index_of(long id) const {
    long index = -99;
    EXPECT_EQ(collection_->GetIndexById(id, &index), S_OK);
    return index;
  }
  /// The name of the item at an index.
  [[nodiscard]] std::string item(int index) const {
    com::Ptr<IDispatch> found;
    EXPECT_EQ(collection_->Item(index, found.put()), S_OK);
    return host.journal.show(found.get());
  }

  com::Ptr<IPersistentCollection> collection_;
};
