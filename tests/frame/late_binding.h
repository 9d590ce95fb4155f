#pragma once

#include <oaidl.h>

#include <span>
#include <vector>

#include "com/error.h"
#include "com/ptr.h"
#include "com/variant.h"

// Calls as a script makes them: by name, through IDispatch.

namespace frame {

inline DISPID id_of(const com::Ptr<IDispatch>& object, const wchar_t* name) {
  auto* text = const_cast<LPOLESTR>(name);
  DISPID id = DISPID_UNKNOWN;
  com::check(object->GetIDsOfNames(GUID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id));
  return id;
}

/// The result of a call is its value; a failing call is raised.
inline com::Variant call(const com::Ptr<IDispatch>& object, const wchar_t* name,
                         std::vector<VARIANT> arguments = {}) {
  // Arguments stand in reverse.
  std::ranges::reverse(arguments);
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  com::Variant result;
  com::check(object->Invoke(id_of(object, name), GUID_NULL, LOCALE_USER_DEFAULT,
                            DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, result.put(),
                            nullptr, nullptr));
  return result;
}

inline com::Variant get(const com::Ptr<IDispatch>& object, const wchar_t* name) {
  return call(object, name);
}

/// The result of the call.
inline HRESULT put(const com::Ptr<IDispatch>& object, const wchar_t* name, const VARIANT& value) {
  VARIANT argument = value;
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&argument, &named, 1, 1};
  return object->Invoke(id_of(object, name), GUID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT,
                        &parameters, nullptr, nullptr, nullptr);
}

}  // namespace frame
