#pragma once

#include <msado15_backcompat.h>

#include "com/free_threaded.h"

namespace modeldb {

/// ADO's class Recordset as an apartment in which a model is used sees it: a record that is being
/// loaded gets a recordset of this module, everybody else one of the class that was there before.
class RecordsetClass : public com::Object<IClassFactory> {
 public:
  using ReferenceCount = std::atomic<long>;

  /// To be made in the apartment for which it is registered, before it is.
  RecordsetClass();

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  com::Ptr<IClassFactory> other_;
  HRESULT other_result_;  // why there is none
};

}  // namespace modeldb
