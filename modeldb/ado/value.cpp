#include "modeldb/ado/value.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

#include "com/bstr.h"
#include "com/error.h"
#include "modeldb/base/ascii.h"

namespace modeldb {
namespace {

void store_integer(std::int64_t value, VARIANT* out) {
  constexpr std::int64_t kExactInDouble = std::int64_t{1} << std::numeric_limits<double>::digits;
  if (std::in_range<LONG>(value)) {
    out->vt = VT_I4;
    out->lVal = static_cast<LONG>(value);
  } else if (value >= -kExactInDouble && value <= kExactInDouble) {
    out->vt = VT_R8;
    out->dblVal = static_cast<double>(value);
  } else {
    com::check(VarDecFromI8(value, &out->decVal));
    out->vt = VT_DECIMAL;  // after the value, whose first bytes it shares
  }
}

void store_blob(std::span<const std::byte> bytes, VARIANT* out) {
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (!array) throw std::bad_alloc();
  std::ranges::copy(bytes, static_cast<std::byte*>(array->pvData));
  out->vt = VT_ARRAY | VT_UI1;
  out->parray = array;
}

}  // namespace

void read_value(const Statement& row, int column, VARIANT* out) {
  switch (row.type(column)) {
    case Statement::Type::kInteger:
      return store_integer(row.integer(column), out);
    case Statement::Type::kReal:
      out->vt = VT_R8;
      out->dblVal = row.real(column);
      return;
    case Statement::Type::kText:
      out->bstrVal = com::Bstr(row.text(column)).detach();
      out->vt = VT_BSTR;
      return;
    case Statement::Type::kBlob:
      return store_blob(row.blob(column), out);
    case Statement::Type::kNull:
      out->vt = VT_NULL;
      return;
  }
}

DataTypeEnum ado_type(std::wstring_view declared_type) {
  static constexpr std::pair<std::wstring_view, DataTypeEnum> kTypes[] = {
      {L"INT", adInteger},   {L"REAL", adDouble},   {L"DOUB", adDouble},       {L"FLOA", adDouble},
      {L"TEXT", adVarWChar}, {L"CHAR", adVarWChar}, {L"BLOB", adLongVarBinary}};
  for (const auto& [prefix, type] : kTypes) {
    if (has_prefix(declared_type, prefix)) return type;
  }
  return adVariant;
}

}  // namespace modeldb
