#include "modeldb/objects/column_reader.h"

#include <algorithm>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"

namespace modeldb {

ColumnReader::ColumnReader(IDispatch* recordset) {
  const auto rows = com::Ptr<IDispatch>(recordset).query<Recordset15>();
  if (!rows) fail(E_NOINTERFACE, L"The object to load from is no ADO Recordset.");
  com::check(rows->get_Fields(fields_.put()), rows);
}

com::Variant ColumnReader::read(std::wstring_view column) const {
  com::Ptr<Field> field;
  com::ArgumentBstr name(column);
  com::check(fields_->get_Item(name.variant(), field.put()), fields_);
  com::Variant value;
  com::check(field->get_Value(value.put()), field);
  return value;
}

com::Variant ColumnReader::read(std::wstring_view column, VARTYPE type) const {
  return read(column).as(type);
}

std::optional<com::Variant> ColumnReader::try_read(std::wstring_view column, VARTYPE type) const {
  try {
    return read(column, type);
  } catch (const com::Error&) {
    return std::nullopt;
  }
}

bool ColumnReader::has_one_of(std::span<const std::wstring_view> columns) const {
  long count = 0;
  com::check(fields_->get_Count(&count), fields_);
  for (long number = 0; number < count; ++number) {
    com::Ptr<Field> field;
    com::check(fields_->get_Item(com::Variant(number), field.put()), fields_);
    com::Bstr name;
    com::check(field->get_Name(name.put()), field);
    if (std::ranges::any_of(columns, [&](auto column) { return same_name(column, name.view()); })) {
      return true;
    }
  }
  return false;
}

}  // namespace modeldb
