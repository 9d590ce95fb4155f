#pragma once

#include "com/aliased.h"
#include "modeldb/base/failure.h"
#include "modeldb/objects/model_database.h"

namespace modeldb {

/// The record store behind `model_database` when it is one of this module, in this process, with a
/// model open; empty otherwise.
inline com::Ptr<RecordStore> own_store(IDispatch* model_database) {
  const auto own = com::own_object<ModelDatabase, kOwnModelDatabase>(model_database);
  return own ? own->store() : nullptr;
}

/// The record store of whatever model database a client passed. Raises, with a sentence, when it is
/// none, and what the model database raises.
inline com::Ptr<IRecordStore> record_store(IDispatch* model_database) {
  com::Ptr<IModelDatabase> database;
  if (model_database) {
    model_database->QueryInterface(__uuidof(IModelDatabase), database.put_void());
  }
  if (!database) {
    fail(E_POINTER, L"No model database was passed. Pass an open Orv_ModelDb.ModelDatabase.");
  }
  com::Ptr<IRecordStore> store;
  com::check(database->get_RecordStore(store.put()), database);
  return com::require(std::move(store));
}

}  // namespace modeldb
