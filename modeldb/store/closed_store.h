#pragma once

#include "modeldb/store/record_store.h"

namespace modeldb {

/// Raises that a model database was asked for something of a model, and has none open.
[[noreturn]] void fail_without_model();

/// The record store of a model database without a model: its members fail with that sentence. A
/// collection passes over an accessor that fails, and so would have none.
class ClosedStore : public RecordStoreBase {
 public:
  STDMETHODIMP SaveRecord(IDispatch*, VARIANT, VARIANT) override { return refuse(); }
  STDMETHODIMP DeleteRecord(IDispatch*) override { return refuse(); }
  STDMETHODIMP RecordsSaved(long, VARIANT) override { return refuse(); }
  STDMETHODIMP RecordsDeleted(long, VARIANT) override { return refuse(); }
  STDMETHODIMP EventsEnabled(long) override { return refuse(); }
  STDMETHODIMP Advise(IDispatch*) override { return refuse(); }
  STDMETHODIMP Unadvise(IDispatch*) override { return refuse(); }

 private:
  static HRESULT refuse();
};

}  // namespace modeldb
