#include "tests/host/model.h"

namespace fake {

STDMETHODIMP RecordStore::SaveRecord(IDispatch* record, VARIANT down, VARIANT up) {
  const HRESULT result = note("Save " + show(record) + ' ' + show(down) + ' ' + show(up));
  if (SUCCEEDED(result)) on_save(*static_cast<IPersistentObject*>(record));
  return result;
}

STDMETHODIMP ModelDatabase::QueryInterface(REFIID iid, void** out) {
  if (IsEqualIID(iid, __uuidof(IModelDatabase)) && FAILED(interface_query)) {
    *out = nullptr;
    return interface_query;
  }
  return Object::QueryInterface(iid, out);
}

}  // namespace fake
