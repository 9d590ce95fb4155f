#pragma once

#include <orv_host.h>

#include "modeldb/base/failure.h"
#include "modeldb/store/record_store.h"

namespace modeldb {

/// How the module's objects reach the open model behind the model database that they are passed.
/// Answered by this module's model database alone, and never marshalled.
struct ModelAccess : IUnknown {
  /// The record store of the open model, with a reference; null when none is open.
  virtual HRESULT STDMETHODCALLTYPE open_store(RecordStore** store) = 0;
};

}  // namespace modeldb

__CRT_UUID_DECL(modeldb::ModelAccess, 0x7131684A, 0xC538, 0x4CFD, 0x9E, 0xC6, 0x72, 0xDE, 0x5E,
                0xEA, 0x4C, 0x04)

namespace modeldb {

/// The record store behind `model_database` when it is one of this module, in this process, with a
/// model open; empty otherwise.
inline com::Ptr<RecordStore> own_store(IDispatch* model_database) {
  if (!model_database) return nullptr;
  com::Ptr<ModelAccess> access;
  model_database->QueryInterface(__uuidof(ModelAccess), access.put_void());
  com::Ptr<RecordStore> store;
  const HRESULT result = access ? access->open_store(store.put()) : S_OK;
  if (FAILED(result)) com::raise_from(result, access.get(), __uuidof(IModelDatabaseFile));
  return store;
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
