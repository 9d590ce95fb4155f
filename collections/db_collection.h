#pragma once

#include "collections/batch.h"
#include "collections/item.h"
#include "com/collection.h"
#include "records/library.h"

namespace orv {

/// An ordered collection of the records of one kind, which saves or deletes all of them in one
/// transaction with one notification of the host. Anything may be added: what is of another kind is
/// refused only when it is asked for by its index.
///
/// ItemInterface is the record interface, Interface the collection's, and `event` is the code by
/// which the host files the collection's notifications.
template <class ItemInterface, class Interface, long event>
class COrvelDbCollection
    : public com::Collection<Interface, ItemInterface, kLibrary, Item<ItemInterface>> {
 public:
  /// Saves every record; one that fails stops neither the others nor the transaction.
  STDMETHODIMP Save(IDispatch* pModelDatabase, VARIANT vCascadeDown, VARIANT vCascadeUp) override {
    if (this->entries().empty()) return S_OK;
    return com::boundary([&] {
      const Batch batch(pModelDatabase);
      batch.begin();
      for_each_record([&](IPersistentObject& record) {
        record.Save(pModelDatabase, vCascadeDown, vCascadeUp);
      });
      batch.commit();
      // Read after the commit: new records have their identifiers only now.
      const com::Variant saved = this->ids();
      batch.resume_events();
      batch.notify_saved(event, saved);
    });
  }

  /// Deletes every record and empties the collection; what fails is passed over as in Save.
  STDMETHODIMP Delete(IDispatch* pModelDatabase) override {
    if (this->entries().empty()) return S_OK;
    return com::boundary([&] {
      const Batch batch(pModelDatabase);
      const com::Variant deleted = this->ids();
      batch.begin();
      for_each_record([&](IPersistentObject& record) { record.Delete(pModelDatabase); });
      // Recorded positions outlive the items: clients still look deleted records up.
      this->entries().drop_items();
      batch.commit();
      batch.resume_events();
      batch.notify_deleted(event, deleted);
    });
  }

 private:
  template <class Visit>
  void for_each_record(Visit&& visit) {
    this->for_each_entry([&](const Item<ItemInterface>& item) {
      if (item.record()) visit(*item.record());
    });
  }
};

}  // namespace orv
