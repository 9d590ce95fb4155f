#pragma once

#include <orv_host.h>

#include "com/ptr.h"

namespace orv {

/// The record behind an object that was added to a collection, whatever its kind: every record
/// interface begins with the members of IPersistentObject. Empty when the object is no record.
/// `likely` is the interface that it is asked for first.
com::Ptr<IPersistentObject> as_record(IUnknown* object, REFIID likely);

/// One item of a collection: what was added, and the record that it is. What is no record keeps its
/// place and takes no part in saving and deleting.
template <class RecordInterface>
class Item {
 public:
  explicit Item(RecordInterface* object)
      : object_(object), record_(as_record(object, __uuidof(RecordInterface))) {}

  [[nodiscard]] IDispatch* object() const { return object_.get(); }
  [[nodiscard]] IPersistentObject* record() const { return record_.get(); }

  /// The record's identifier; 0 when there is none to be had.
  [[nodiscard]] long id() const {
    long id = 0;
    if (record_) record_->get_ID(&id);
    return id;
  }

 private:
  com::Ptr<IDispatch> object_;
  com::Ptr<IPersistentObject> record_;
};

}  // namespace orv
