#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <span>
#include <utility>

#include "com/bstr.h"
#include "com/error.h"

namespace com {

/// The platform's conversions read their source only, but the toolchain declares it without const.
inline VARIANT* mutable_address(const VARIANT& value) { return const_cast<VARIANT*>(&value); }

/// Owning VARIANT. Converts to VARIANT for calls that take one by value: the callee borrows it.
class Variant {
 public:
  Variant() = default;
  /// A copy of `source`; a failing copy is raised.
  explicit Variant(const VARIANT& source) {
    if (is_plain(source.vt)) {
      value_ = source;
    } else {
      check(VariantCopy(&value_, mutable_address(source)));
    }
  }
  explicit Variant(std::int16_t number) : Variant() {
    value_.vt = VT_I2;
    value_.iVal = number;
  }
  explicit Variant(long number) : Variant() {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  explicit Variant(int number) : Variant(static_cast<long>(number)) {}
  explicit Variant(double number) : Variant() {
    value_.vt = VT_R8;
    value_.dblVal = number;
  }
  explicit Variant(Bstr text) : Variant() {
    value_.vt = VT_BSTR;
    value_.bstrVal = text.detach();
  }
  /// Shares `object`.
  explicit Variant(IDispatch* object) : Variant() {
    value_.vt = VT_DISPATCH;
    value_.pdispVal = object;
    if (object) object->AddRef();
  }
  Variant(const Variant& other) : Variant(other.value_) {}
  Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  ~Variant() { clear(); }

  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }

  static Variant boolean(bool value) {
    Variant result;
    result.value_.vt = VT_BOOL;
    result.value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return result;
  }

  /// A one-dimensional array of 32-bit integers, lower bound 0. Throws std::bad_alloc.
  static Variant array(std::span<const long> numbers) {
    Variant result;
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(numbers.size()));
    if (!array) throw std::bad_alloc();
    result.value_.vt = VT_ARRAY | VT_I4;
    result.value_.parray = array;
    std::ranges::copy(numbers, static_cast<long*>(array->pvData));
    return result;
  }

  /// What a client passes for an argument that it leaves out.
  static Variant omitted() {
    Variant result;
    result.value_.vt = VT_ERROR;
    result.value_.scode = DISP_E_PARAMNOTFOUND;
    return result;
  }

  /// The address for an out parameter; what was held is cleared first.
  VARIANT* put() {
    clear();
    return &value_;
  }

  /// Hands the value to the caller.
  [[nodiscard]] VARIANT detach() {
    const VARIANT result = value_;
    VariantInit(&value_);
    return result;
  }

  /// The value converted to `type` by the platform's rules; a failing conversion is raised.
  [[nodiscard]] Variant as(VARTYPE type) && {
    return value_.vt == type ? std::move(*this) : std::as_const(*this).as(type);
  }
  [[nodiscard]] Variant as(VARTYPE type) const& {
    Variant result;
    check(VariantChangeType(&result.value_, mutable_address(value_), 0, type));
    return result;
  }

  [[nodiscard]] VARTYPE type() const { return value_.vt; }
  [[nodiscard]] const VARIANT& get() const { return value_; }
  operator const VARIANT&() const { return value_; }

 private:
  /// Whether a value of the type holds nothing. The platform's functions look at every type there
  /// is; such a value needs no look.
  static bool is_plain(VARTYPE type) {
    switch (type) {
      case VT_EMPTY:
      case VT_NULL:
      case VT_I2:
      case VT_I4:
      case VT_R8:
      case VT_BOOL:
      case VT_ERROR:
        return true;
      default:
        return false;
    }
  }

  void clear() {
    if (is_plain(value_.vt)) {
      value_.vt = VT_EMPTY;
    } else {
      VariantClear(&value_);
    }
  }

  VARIANT value_{};
};

/// An optional truth value: whether it stands for true, and how its conversion went. What does not
/// convert, such as one that is left out, counts as true.
struct OptionalFlag {
  explicit OptionalFlag(const VARIANT& argument) {
    if (argument.vt == VT_BOOL || argument.vt == VT_I2) {
      value = argument.iVal != VARIANT_FALSE;
      return;
    }
    // Into a value of its own: a string in the argument belongs to the caller.
    VARIANT converted;
    VariantInit(&converted);
    status = VariantChangeType(&converted, mutable_address(argument), 0, VT_BOOL);
    value = FAILED(status) || converted.boolVal != VARIANT_FALSE;
  }

  bool value;
  HRESULT status = S_OK;
};

/// True for an optional argument that the client left out.
inline bool is_omitted(const VARIANT& argument) {
  return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

}  // namespace com
