#pragma once

#include <msado15_backcompat.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "com/automation.h"
#include "com/free_threaded.h"
#include "modeldb/ado/ado61.h"

namespace modeldb {

/// ADO's type library, which the platform registers: late binding to the objects goes by it, so
/// that scripts find the names and numbers that they know. A machine has 2.8, 6.1, or both.
inline constexpr GUID kAdo61Library = {
    0xB691E011, 0x1797, 0x432E, {0x90, 0x7A, 0x4D, 0x8C, 0x69, 0x33, 0x91, 0x29}};
inline const com::TypeLibrary kAdoLibrary{
    LIBID_ADODB, 2, 8, LOCALE_NEUTRAL, {&kAdo61Library, 6, 1, &ado61_identifier}};

/// What a script learns when it uses a member that has no meaning here. To be returned.
HRESULT not_available(std::wstring_view member, std::wstring_view reason);

/// An object that answers the interface of ADO and those from which it derives, by their
/// identifiers in ADO 2.x and in 6.1.
template <class Interface, class... Inherited>
class AdoObject : public com::FreeThreaded<com::Dispatch<Interface, kAdoLibrary>> {
 public:
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return IsEqualIID(iid, __uuidof(Interface)) || is_other_name(iid) ? S_OK : S_FALSE;
  }

 protected:
  HRESULT query_other(REFIID iid, void** out) override {
    if (!is_other_name(iid)) {
      return com::FreeThreaded<com::Dispatch<Interface, kAdoLibrary>>::query_other(iid, out);
    }
    *out = com::Ptr<Interface>(static_cast<Interface*>(this)).detach();
    return S_OK;
  }

 private:
  /// Of a base interface, whose members are the first of Interface, or of Interface in ADO 6.1.
  static bool is_other_name(REFIID iid) {
    static const IID kIn61[] = {ado61_identifier(__uuidof(Interface)),
                                ado61_identifier(__uuidof(Inherited))...};
    return (IsEqualIID(iid, __uuidof(Inherited)) || ...) ||
           std::ranges::find(kIn61, iid) != std::end(kIn61);
  }
};

}  // namespace modeldb
