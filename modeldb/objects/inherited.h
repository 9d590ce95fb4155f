#pragma once

#include <oaidl.h>

#include "com/object.h"

namespace modeldb {

/// An object whose own interface derives from one of the contract, which it answers as well.
template <class Base, class Contract>
class Inheriting : public Base {
 public:
  using Base::Base;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return IsEqualIID(iid, __uuidof(Contract)) ? S_OK : Base::InterfaceSupportsErrorInfo(iid);
  }

 protected:
  HRESULT query_other(REFIID iid, void** out) override {
    if (!IsEqualIID(iid, __uuidof(Contract))) return Base::query_other(iid, out);
    *out = com::Ptr<Contract>(static_cast<Contract*>(this)).detach();
    return S_OK;
  }
};

}  // namespace modeldb
