#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/modeldb/model_test.h"
#include "tests/modeldb/owned_by_test.h"

namespace model_test {

/// What a script advises the record store of: it notes what it is told.
class Listener final : public OwnedByTest<IDispatch> {
 public:
  std::vector<std::string> calls;
  HRESULT result = S_OK;
  bool has_methods = true;
  std::function<void()> on_call;

  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    if (!has_methods) return DISP_E_UNKNOWNNAME;
    methods_.push_back(narrow(names[0]));
    ids[0] = static_cast<DISPID>(methods_.size());
    return S_OK;
  }

  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                      EXCEPINFO*, UINT*) override {
    calls.push_back(methods_[member - 1] + " " + text(parameters->rgvarg[1]) + " " +
                    text(parameters->rgvarg[0]));
    // A copy: the call may replace it.
    if (const auto call = on_call) call();
    return result;
  }

 private:
  /// A number, or an array that a script can index.
  static std::string text(const VARIANT& value) {
    if (value.vt == VT_I4) return std::to_string(value.lVal);
    if (value.vt == VT_DISPATCH) return "an object";
    if (value.vt != (VT_ARRAY | VT_VARIANT)) return "type " + std::to_string(value.vt);
    std::string list = "[";
    long last = -1;
    SafeArrayGetUBound(value.parray, 1, &last);
    for (long index = 0; index <= last; ++index) {
      com::Variant element;
      SafeArrayGetElement(value.parray, &index, element.put());
      list += (index ? " " : "") + text(element);
    }
    return list + "]";
  }

  std::vector<std::string> methods_;
};

}  // namespace model_test
