#pragma once

#include <msado15_backcompat.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "com/aliased.h"
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

/// The identifiers under which ADO's interface is known too: of those from which it derives, in ADO
/// 2.x, and of all of them in 6.1.
template <class Interface, class... Inherited>
struct AdoNames {
  static bool has(REFIID iid) {
    static const IID kIn61[] = {ado61_identifier(__uuidof(Interface)),
                                ado61_identifier(__uuidof(Inherited))...};
    return com::NamesOf<Inherited...>::has(iid) || std::ranges::find(kIn61, iid) != std::end(kIn61);
  }
};

/// An object of ADO.
template <class Interface, class... Inherited>
using AdoObject = com::Aliased<com::FreeThreaded<com::Dispatch<Interface, kAdoLibrary>>, Interface,
                               AdoNames<Interface, Inherited...>>;

}  // namespace modeldb
