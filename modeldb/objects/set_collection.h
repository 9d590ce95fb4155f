#pragma once

#include "com/collection.h"
#include "modeldb/library.h"
#include "modeldb/objects/model_access.h"
#include "modeldb/objects/set.h"

namespace modeldb {

/// A set in a collection. E_NOINTERFACE: the object is no set of the collection's kind.
template <class SetInterface>
class SetEntry {
 public:
  explicit SetEntry(SetInterface* object) : set_(com::Ptr<IUnknown>(object).query<SetInterface>()) {
    if (!set_) {
      fail(E_NOINTERFACE, L"The object passed to Add is no set of this collection's kind.");
    }
  }

  [[nodiscard]] const com::Ptr<SetInterface>& set() const { return set_; }
  [[nodiscard]] IDispatch* object() const { return set_.get(); }
  [[nodiscard]] long id() const {
    long id = 0;
    set_->get_ID(&id);
    return id;
  }

 private:
  com::Ptr<SetInterface> set_;
};

/// An ordered collection of sets. It behaves as the collections of records do, but reports a set
/// that cannot be saved: a record that is being saved with its sets must not be linked to a set
/// that is not there.
template <class Interface, class ItemInterface, long event>
class SetCollection
    : public com::Collection<Interface, ItemInterface, kLibrary, SetEntry<ItemInterface>> {
 public:
  // As those of sets: .NET's finalizer releases beside the thread that works.
  using ReferenceCount = std::atomic<long>;

  /// Saves every set, in one transaction with one notification, or as part of the record that is
  /// being saved. The failure of one stops no other; the last is reported.
  STDMETHODIMP Save(IDispatch* pModelDatabase, VARIANT vCascadeDown, VARIANT vCascadeUp) override {
    if (this->entries().empty()) return S_OK;
    return com::boundary([&] {
      return change_all(
          pModelDatabase,
          [&](const com::Ptr<ItemInterface>& set) {
            com::check(set->Save(pModelDatabase, vCascadeDown, vCascadeUp), set);
          },
          [&](RecordStore& store) { store.RecordsSaved(event, this->ids()); });
    });
  }

  /// Deletes every set and empties the collection; otherwise as Save.
  STDMETHODIMP Delete(IDispatch* pModelDatabase) override {
    if (this->entries().empty()) return S_OK;
    return com::boundary([&] {
      const com::Variant deleted = this->ids();
      const HRESULT result = change_all(
          pModelDatabase,
          [&](const com::Ptr<ItemInterface>& set) { com::check(set->Delete(pModelDatabase), set); },
          [&](RecordStore& store) { store.RecordsDeleted(event, deleted); });
      this->entries().drop_items();
      return result;
    });
  }

 private:
  template <class Visit, class Notify>
  HRESULT change_all(IDispatch* model_database, Visit visit, Notify notify) {
    const auto store = own_store(model_database);
    if (!store) {
      fail(E_POINTER,
           L"The sets were not given an open Orv_ModelDb.ModelDatabase of the same process.");
    }
    const Turn turn(store->turns());
    const bool alone = !store->is_changing();
    com::Outcome outcome;
    store->change_together([&] {
      // Not by the cursor: the record being saved may belong to somebody who walks its sets.
      for (std::size_t position = 0; position < this->entries().size(); ++position) {
        const auto set = this->entries()[position].set();
        outcome.attempt([&] { visit(set); });
      }
    });
    if (alone) notify(*store);
    return outcome.deliver();
  }
};

using LoadSets = SetCollection<ILoadSets, ILoadSet, LoadSet::kEventType>;
using ConstraintSets = SetCollection<IConstraintSets, IConstraintSet, ConstraintSet::kEventType>;
using DesignScenarios =
    SetCollection<IDesignScenarios, IDesignScenario, DesignScenario::kEventType>;

}  // namespace modeldb
