#pragma once

#include <msado15_backcompat.h>

#include <string_view>

#include "com/automation.h"

namespace modeldb {

/// ADO's type library, which the platform registers: late binding to the objects goes by it, so
/// that scripts find the names and numbers that they know.
inline const com::TypeLibrary kAdoLibrary{LIBID_ADODB, 2, 8, LOCALE_NEUTRAL};

/// What a script learns when it uses a member that has no meaning here. To be returned.
HRESULT not_available(std::wstring_view member, std::wstring_view reason);

/// An object that answers the interface of ADO and those from which it derives.
template <class Interface, class... Inherited>
class AdoObject : public com::Dispatch<Interface, kAdoLibrary> {
 public:
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return IsEqualIID(iid, __uuidof(Interface)) || is_inherited(iid) ? S_OK : S_FALSE;
  }

 protected:
  HRESULT query_other(REFIID iid, void** out) override {
    *out = nullptr;
    if (!is_inherited(iid)) return E_NOINTERFACE;
    *out = com::Ptr<Interface>(static_cast<Interface*>(this)).detach();
    return S_OK;
  }

 private:
  static bool is_inherited(REFIID iid) { return (IsEqualIID(iid, __uuidof(Inherited)) || ...); }
};

}  // namespace modeldb
