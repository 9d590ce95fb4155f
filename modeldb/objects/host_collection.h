#pragma once

#include "com/collection.h"
#include "com/free_threaded.h"
#include "modeldb/base/library.h"
#include "modeldb/objects/model_access.h"
#include "modeldb/objects/set.h"
#include "modeldb/objects/vertex.h"

namespace modeldb {

/// A set or vertex in a collection. E_NOINTERFACE: the object is of another kind.
template <class ItemInterface>
class HostEntry {
 public:
  explicit HostEntry(ItemInterface* object)
      : item_(com::Ptr<IUnknown>(object).query<ItemInterface>()) {
    if (!item_) {
      fail(E_NOINTERFACE,
           L"The object passed to Add is not of this collection's kind. Pass one that is.");
    }
  }

  [[nodiscard]] const com::Ptr<ItemInterface>& item() const { return item_; }
  [[nodiscard]] IDispatch* object() const { return item_.get(); }
  [[nodiscard]] long id() const {
    long id = 0;
    item_->get_ID(&id);
    return id;
  }

 private:
  com::Ptr<ItemInterface> item_;
};

/// An ordered collection of sets or vertices. It behaves as the collections of records do, but
/// reports what cannot be saved: a record that is being saved with its sets must not be linked to a
/// set that is not there.
template <class Interface, class ItemInterface, long event>
class HostCollection
    : public com::Collection<
          Interface, ItemInterface, kLibrary, HostEntry<ItemInterface>,
          com::FreeThreaded<com::DispatchObject<Interface, kLibrary, IEnumVARIANT>>> {
 public:
  /// Saves every object, in one transaction with one notification, or as part of the record that is
  /// being saved. The failure of one stops no other; the last is reported.
  STDMETHODIMP Save(IDispatch* pModelDatabase, VARIANT vCascadeDown, VARIANT vCascadeUp) override {
    if (this->entries().empty()) return S_OK;
    return com::boundary([&] {
      return change_all(
          pModelDatabase,
          [&](const com::Ptr<ItemInterface>& item) {
            com::check(item->Save(pModelDatabase, vCascadeDown, vCascadeUp), item);
          },
          [&](RecordStore& store) { store.RecordsSaved(event, this->ids()); });
    });
  }

  /// Deletes every object and empties the collection; otherwise as Save.
  STDMETHODIMP Delete(IDispatch* pModelDatabase) override {
    if (this->entries().empty()) return S_OK;
    return com::boundary([&] {
      const com::Variant deleted = this->ids();
      const HRESULT result = change_all(
          pModelDatabase,
          [&](const com::Ptr<ItemInterface>& item) {
            com::check(item->Delete(pModelDatabase), item);
          },
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
           L"The collection was not given an open Orv_ModelDb.ModelDatabase of the same process.");
    }
    const Turn turn(store->turns());
    const bool alone = !store->is_changing();
    if (alone) store->begin_batch();
    com::Outcome outcome;
    store->change_together([&] {
      // Not by the cursor: the record being saved may belong to somebody who walks its sets.
      for (std::size_t position = 0; position < this->entries().size(); ++position) {
        const auto item = this->entries()[position].item();
        outcome.attempt([&] {
          if (alone) {
            store->attempt_in_batch(item.get(), [&] { visit(item); });
          } else {
            visit(item);
          }
        });
      }
    });
    if (alone) notify(*store);
    return outcome.deliver();
  }
};

using LoadSets = HostCollection<ILoadSets, ILoadSet, LoadSet::kEventType>;
using ConstraintSets = HostCollection<IConstraintSets, IConstraintSet, ConstraintSet::kEventType>;
using DesignScenarios =
    HostCollection<IDesignScenarios, IDesignScenario, DesignScenario::kEventType>;
using Vertices = HostCollection<IVertices, ICoordinateVertex, Vertex::kEventType>;

}  // namespace modeldb
