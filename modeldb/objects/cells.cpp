#include "modeldb/objects/cells.h"

#include <cstring>

#include "com/ptr.h"
#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

/// What a reference refers to.
const VARIANT& target_of(const VARIANT& value) {
  const VARIANT* target = &value;
  while (target->vt == (VT_BYREF | VT_VARIANT)) target = target->pvarVal;
  return *target;
}

/// The array in a variant; null when there is none.
SAFEARRAY* array_in(const VARIANT& value) {
  if (!(value.vt & VT_ARRAY)) return nullptr;
  return value.vt & VT_BYREF ? *value.pparray : value.parray;
}

VARTYPE element_type(const VARIANT& value) { return value.vt & VT_TYPEMASK; }

/// The object in a variant; empty when there is none.
com::Ptr<IDispatch> object_in(const VARIANT& value) {
  if (value.vt == VT_DISPATCH) return com::Ptr<IDispatch>(value.pdispVal);
  if (value.vt == (VT_BYREF | VT_DISPATCH)) return com::Ptr<IDispatch>(*value.ppdispVal);
  return nullptr;
}

std::optional<com::Variant> property(const com::Ptr<IDispatch>& object, DISPID member) {
  DISPPARAMS none{};
  com::Variant value;
  const HRESULT result = object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                        &none, value.put(), nullptr, nullptr);
  if (FAILED(result)) return std::nullopt;
  return value;
}

/// Nothing when the object has no such property.
std::optional<com::Variant> property(const com::Ptr<IDispatch>& object, std::wstring name) {
  LPOLESTR names = name.data();
  DISPID member = DISPID_UNKNOWN;
  if (FAILED(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member))) {
    return std::nullopt;
  }
  return property(object, member);
}

/// How many elements an array of JScript has; nothing for any other object.
std::optional<std::size_t> script_length(const com::Ptr<IDispatch>& object) {
  const auto length = property(object, L"length");
  if (!length || length->type() != VT_I4 || length->get().lVal < 0) return std::nullopt;
  return static_cast<std::size_t>(length->get().lVal);
}

/// Calls `take` with each element of a one-dimensional array of whatever language. False when the
/// value is no such array.
template <class Take>
bool for_each_element(const VARIANT& value, Take take) {
  if (SAFEARRAY* const array = array_in(value)) {
    LockedArray elements(array, element_type(value));
    if (elements.dimensions() != 1) return false;
    for (std::size_t index = 0; index < elements.size(); ++index) take(elements.at(index));
    return true;
  }
  const auto object = object_in(value);
  const auto length = object ? script_length(object) : std::nullopt;
  if (!length) return false;
  for (std::size_t index = 0; index < *length; ++index) {
    // JScript keeps no element that was never put.
    const auto element = property(object, std::to_wstring(index));
    take(element ? element->get() : com::Variant().get());
  }
  return true;
}

[[noreturn]] void fail_on_rows() {
  fail(kInvalidArgument,
       L"The rows are no table. Pass a two-dimensional array such as the values of a range of "
       L"cells, or an array with an array for each row.");
}

std::wstring counted(std::size_t count, const wchar_t* what) {
  return std::to_wstring(count) + L" " + what + (count == 1 ? L"" : L"s");
}

[[noreturn]] void fail_on_width(const std::wstring& what, std::size_t cells, std::size_t columns) {
  fail(kInvalidArgument, what + counted(cells, L"cell") + L" for " + counted(columns, L"column") +
                             L". Pass one cell for each column that is named.");
}

std::wstring text_of(const VARIANT& value) {
  com::Variant text;
  if (FAILED(VariantChangeType(text.put(), com::mutable_address(value), 0, VT_BSTR))) {
    fail(kInvalidArgument, L"One of the column names is no text. Pass the names as texts.");
  }
  return std::wstring(com::Bstr::view(text.get().bstrVal));
}

std::vector<std::wstring> split_at_commas(std::wstring_view text) {
  std::vector<std::wstring> parts;
  for (;;) {
    const auto comma = text.find(L',');
    parts.emplace_back(text.substr(0, comma));
    if (comma == std::wstring_view::npos) return parts;
    text.remove_prefix(comma + 1);
  }
}

}  // namespace

LockedArray::LockedArray(SAFEARRAY* array, VARTYPE type) : array_(array), type_(type) {
  void* data = nullptr;
  com::check(SafeArrayAccessData(array, &data));
  data_ = static_cast<const std::byte*>(data);
}

std::size_t LockedArray::length(UINT dimension) const {
  // The bounds stand in reverse order.
  return array_->rgsabound[array_->cDims - dimension].cElements;
}

std::size_t LockedArray::size() const {
  std::size_t size = 1;
  for (UINT dimension = 1; dimension <= dimensions(); ++dimension) size *= length(dimension);
  return size;
}

const VARIANT& LockedArray::at(std::size_t position) {
  const std::byte* const place = data_ + position * array_->cbElements;
  if (type_ == VT_VARIANT) return target_of(*reinterpret_cast<const VARIANT*>(place));
  if (type_ == VT_DECIMAL) {
    std::memcpy(&element_.decVal, place, sizeof(DECIMAL));
  } else if (array_->cbElements <= sizeof element_.llVal) {
    std::memcpy(&element_.llVal, place, array_->cbElements);
  } else {
    fail_on_rows();
  }
  element_.vt = type_;  // after a decimal number, whose first bytes it shares
  return element_;
}

Cells::Cells(const VARIANT& argument, std::size_t columns) : columns_(columns) {
  const VARIANT& value = target_of(argument);
  const auto object = object_in(value);
  const bool is_holder = object && !script_length(object);
  // A range of cells is passed as an object by programs that do not ask for its value themselves.
  if (is_holder) value_ = property(object, DISPID_VALUE).value_or(com::Variant());
  take(is_holder ? value_.get() : value);
}

void Cells::take(const VARIANT& value) {
  SAFEARRAY* const array = array_in(value);
  if (array && SafeArrayGetDim(array) == 2) {
    table_.emplace(array, element_type(value));
    return take_table();
  }
  if (!for_each_element(value, [&](const VARIANT& row) { take_row(row); })) fail_on_rows();
}

void Cells::take_table() {
  rows_ = table_->length(1);
  if (rows_ != 0 && table_->length(2) != columns_) {
    fail_on_width(L"Each row has ", table_->length(2), columns_);
  }
}

void Cells::take_row(const VARIANT& row) {
  const std::size_t before = copies_.size();
  const bool is_row =
      for_each_element(row, [&](const VARIANT& cell) { copies_.emplace_back(target_of(cell)); });
  if (!is_row) fail_on_rows();
  ++rows_;
  const std::size_t cells = copies_.size() - before;
  if (cells != columns_)
    fail_on_width(L"Row " + std::to_wstring(rows_) + L" has ", cells, columns_);
}

const VARIANT& Cells::get(std::size_t row, std::size_t column) {
  return table_ ? table_->at(row + column * rows_) : copies_[row * columns_ + column].get();
}

std::vector<std::wstring> list_of_texts(const VARIANT& argument) {
  const VARIANT* value = &target_of(argument);
  com::Variant held;
  if (const auto object = object_in(*value); object && !script_length(object)) {
    if (auto of_object = property(object, DISPID_VALUE)) held = std::move(*of_object);
    value = &held.get();
  }
  std::vector<std::wstring> texts;
  if (SAFEARRAY* const array = array_in(*value)) {
    LockedArray elements(array, element_type(*value));
    for (std::size_t index = 0; index < elements.size(); ++index) {
      texts.push_back(text_of(elements.at(index)));
    }
    return texts;
  }
  if (for_each_element(*value, [&](const VARIANT& text) { texts.push_back(text_of(text)); })) {
    return texts;
  }
  return split_at_commas(text_of(*value));
}

}  // namespace modeldb
