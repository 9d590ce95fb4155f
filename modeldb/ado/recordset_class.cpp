#include "modeldb/ado/recordset_class.h"

#include "modeldb/ado/factories.h"
#include "modeldb/ado/record_load.h"

namespace modeldb {

RecordsetClass::RecordsetClass()
    : other_result_(CoGetClassObject(CLSID_Recordset, CLSCTX_ALL, nullptr, __uuidof(IClassFactory),
                                     other_.put_void())) {}

STDMETHODIMP RecordsetClass::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (RecordLoad::takes_recordset()) return create_recordset(outer, iid, out);
  return other_ ? other_->CreateInstance(outer, iid, out) : other_result_;
}

STDMETHODIMP RecordsetClass::LockServer(BOOL lock) {
  lock ? com::Module::instance().lock() : com::Module::instance().unlock();
  return S_OK;
}

}  // namespace modeldb
