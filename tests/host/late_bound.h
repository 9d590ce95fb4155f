#pragma once

#include <oaidl.h>

#include <algorithm>
#include <vector>

#include "com/ptr.h"
#include "com/variant.h"

namespace server {

/// An object as a script uses it: members by name, through IDispatch.
class LateBound {
 public:
  explicit LateBound(IUnknown* object) : object_(com::Ptr<IUnknown>(object).query<IDispatch>()) {}
  template <class Interface>
  explicit LateBound(const com::Ptr<Interface>& object) : LateBound(object.get()) {}

  /// What came of a call: what the member itself returned, and the words of its failure.
  struct Outcome {
    HRESULT result;
    com::Variant value;
    com::Bstr words;
  };

  /// A method, or the value of a property.
  [[nodiscard]] Outcome call(const wchar_t* name, std::vector<VARIANT> arguments = {}) const {
    return invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(arguments));
  }
  [[nodiscard]] com::Variant get(const wchar_t* name) const { return call(name).value; }
  HRESULT put(const wchar_t* name, const VARIANT& value) const {
    return invoke(name, DISPATCH_PROPERTYPUT, {value}).result;
  }
  HRESULT put_reference(const wchar_t* name, IDispatch* object) const {
    return invoke(name, DISPATCH_PROPERTYPUTREF, {com::Variant(object)}).result;
  }

 private:
  Outcome invoke(const wchar_t* name, WORD flags, std::vector<VARIANT> arguments) const {
    Outcome outcome{};
    DISPID member = DISPID_UNKNOWN;
    auto* names = const_cast<wchar_t*>(name);
    outcome.result = object_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
    if (FAILED(outcome.result)) return outcome;

    std::ranges::reverse(arguments);
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    DISPID new_value = DISPID_PROPERTYPUT;
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
      parameters.rgdispidNamedArgs = &new_value;
      parameters.cNamedArgs = 1;
    }
    EXCEPINFO exception{};
    outcome.result = object_->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                     outcome.value.put(), &exception, nullptr);
    outcome.words = com::Bstr::adopt(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrHelpFile);
    if (outcome.result == DISP_E_EXCEPTION) outcome.result = exception.scode;
    return outcome;
  }

  com::Ptr<IDispatch> object_;
};

}  // namespace server
