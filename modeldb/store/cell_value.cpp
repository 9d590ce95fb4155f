#include "modeldb/store/cell_value.h"

#include <cmath>
#include <cwctype>
#include <utility>

#include "com/variant.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/number.h"

namespace modeldb {
namespace {

/// The cell as people read it, for a sentence.
std::wstring shown(const VARIANT& cell) {
  if (cell.vt == VT_ERROR) return L"an error value";
  if (cell.vt == VT_DATE) return L"a date";
  com::Variant text;
  constexpr LCID kNeutral = LOCALE_INVARIANT;
  if (FAILED(VariantChangeTypeEx(text.put(), com::mutable_address(cell), kNeutral, 0, VT_BSTR))) {
    return L"an object or a list";
  }
  return quoted(com::Bstr::view(text.get().bstrVal));
}

[[noreturn]] void fail_as(const VARIANT& cell, std::wstring_view fault) {
  throw CellFault{L"holds " + shown(cell) + L", which is " + std::wstring(fault) + L"."};
}

Literal number_in_text(const VARIANT& cell, std::wstring_view fault) {
  std::wstring_view text = trimmed(com::Bstr::view(cell.bstrVal));
  if (const auto number = parse_number(text)) return *number;
  if (text.find(L',') != std::wstring_view::npos) {
    fail_as(cell, L"no number: decimals follow a point, as in 12.5");
  }
  fail_as(cell, fault);
}

/// The number in a cell, as a 64-bit integer where it is of such a type.
Literal number_in(const VARIANT& cell, std::wstring_view fault) {
  switch (cell.vt) {
    case VT_R8:
      return cell.dblVal;
    case VT_R4:
      return double{cell.fltVal};
    case VT_I4:
    case VT_INT:
      return std::int64_t{cell.lVal};
    case VT_I2:
      return std::int64_t{cell.iVal};
    case VT_BOOL:
      return std::int64_t{cell.boolVal == VARIANT_FALSE ? 0 : -1};
    case VT_BSTR:
      return number_in_text(cell, fault);
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_CY:
    case VT_DECIMAL: {
      VARIANT number;
      VariantInit(&number);
      if (FAILED(VariantChangeType(&number, com::mutable_address(cell), 0, VT_R8))) break;
      return number.dblVal;
    }
    default:
      break;
  }
  fail_as(cell, fault);
}

double real_in(const VARIANT& cell) {
  constexpr std::wstring_view kFault = L"no finite number";
  if (cell.vt == VT_BOOL) fail_as(cell, kFault);
  const Literal number = number_in(cell, kFault);
  const auto* const integer = std::get_if<std::int64_t>(&number);
  const double real = integer ? static_cast<double>(*integer) : std::get<double>(number);
  if (!std::isfinite(real)) fail_as(cell, kFault);
  return real;
}

std::int64_t integer_in(const VARIANT& cell, std::int32_t greatest) {
  const std::wstring_view fault = greatest == INT16_MAX ? L"no whole number of at most 32767"
                                                        : L"no whole number of at most 2147483647";
  const Literal number = number_in(cell, fault);
  const auto* const integer = std::get_if<std::int64_t>(&number);
  if (integer) {
    if (*integer > greatest || *integer < -std::int64_t{greatest} - 1) fail_as(cell, fault);
    return *integer;
  }
  const double real = std::get<double>(number);
  // Also false for what is no number.
  const bool fits = real == std::trunc(real) && std::abs(real) <= greatest;
  if (!fits) fail_as(cell, fault);
  return static_cast<std::int64_t>(real);
}

}  // namespace

std::wstring_view trimmed(std::wstring_view text) {
  while (!text.empty() && std::iswspace(text.back())) text.remove_suffix(1);
  while (!text.empty() && std::iswspace(text.front())) text.remove_prefix(1);
  return text;
}

bool is_blank(const VARIANT& cell) {
  if (cell.vt == VT_EMPTY || cell.vt == VT_NULL) return true;
  return cell.vt == VT_BSTR && trimmed(com::Bstr::view(cell.bstrVal)).empty();
}

std::wstring_view text_of_cell(const VARIANT& cell, std::wstring& text) {
  if (cell.vt == VT_BSTR) {
    const auto found = trimmed(com::Bstr::view(cell.bstrVal));
    if (found.find(L'\0') != std::wstring_view::npos) {
      throw CellFault{L"holds a text with a NUL character in it."};
    }
    return found;
  }
  com::Variant converted;
  const bool is_value = cell.vt != VT_ERROR && cell.vt != VT_DATE && cell.vt != VT_DISPATCH;
  if (!is_value || FAILED(VariantChangeTypeEx(converted.put(), com::mutable_address(cell),
                                              LOCALE_INVARIANT, 0, VT_BSTR))) {
    fail_as(cell, L"no text");
  }
  text = com::Bstr::view(converted.get().bstrVal);
  return text;
}

Literal literal_of(const VARIANT& cell, const Column& column, std::wstring& text) {
  switch (column.type) {
    case ColumnType::kInteger:
      return integer_in(cell, column.greatest);
    case ColumnType::kReal:
      return real_in(cell);
    case ColumnType::kText:
      break;
  }
  return text_of_cell(cell, text);
}

long vertex_of(const VARIANT& cell) {
  const auto id = static_cast<long>(integer_in(cell, INT32_MAX));
  if (id < 0 || cell.vt == VT_BOOL) fail_as(cell, L"no number of a node, which is 1 or more");
  return id;
}

long key_of(const VARIANT& cell) {
  const auto key = static_cast<long>(integer_in(cell, INT32_MAX));
  if (key < 1 || cell.vt == VT_BOOL) fail_as(cell, L"no record number, which is 1 or more");
  return key;
}

}  // namespace modeldb
