#pragma once

#include <oaidl.h>
#include <windows.h>

#include <string_view>

#include "com/ptr.h"

namespace com {

/// A failure on its way to the boundary of the interface member that the client called: the
/// HRESULT, and the error information that the failing object set.
class Error {
 public:
  explicit Error(HRESULT result, Ptr<IErrorInfo> info = nullptr)
      : result_(result), info_(std::move(info)) {}

  [[nodiscard]] HRESULT result() const { return result_; }
  [[nodiscard]] const Ptr<IErrorInfo>& info() const { return info_; }

 private:
  HRESULT result_;
  Ptr<IErrorInfo> info_;
};

/// Raises `result` for a failing call of the interface `interface_id` of `source`, with the error
/// information that `source` set, if it says that it sets any for that interface.
[[noreturn]] void raise_from(HRESULT result, IUnknown* source, REFIID interface_id);

/// Raises `result` with `sentence` as the description that the script sees, and `source` as the
/// name of the module that says it.
[[noreturn]] void fail(HRESULT result, std::wstring_view source, std::wstring_view sentence);

/// Raises a failing `result` that no object explains.
inline HRESULT check(HRESULT result) {
  if (FAILED(result)) throw Error(result);
  return result;
}

/// Raises the failing `result` of a call of `source` through Interface. Returns a success code
/// unchanged.
template <class Interface>
HRESULT check(HRESULT result, Interface* source) {
  if (FAILED(result)) raise_from(result, source, __uuidof(Interface));
  return result;
}
template <class Interface>
HRESULT check(HRESULT result, const Ptr<Interface>& source) {
  return check(result, source.get());
}

/// Raises E_POINTER for a pointer that must not be null; returns it otherwise.
template <class Pointer>
Pointer&& require(Pointer&& pointer) {
  if (!pointer) throw Error(E_POINTER);
  return std::forward<Pointer>(pointer);
}

}  // namespace com
