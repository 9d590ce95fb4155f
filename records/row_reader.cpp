#include "records/row_reader.h"

#include <new>
#include <utility>

#include "records/text.h"

namespace orv {

std::optional<com::Variant> RowReader::read(std::wstring_view column, VARTYPE type,
                                            com::Outcome& outcome) const {
  std::optional<com::Variant> value;
  try {
    com::ArgumentBstr bare_name(column);
    com::Outcome first;
    bool found_first = false;
    first.attempt([&] { value = value_of(bare_name.variant(), type, found_first); });
    if (value) return value;
    com::ArgumentBstr qualified_name((Text() << qualifier_ << L"." << column).view());
    com::Outcome second;
    bool found_second = false;
    second.attempt([&] { value = value_of(qualified_name.variant(), type, found_second); });
    if (!value) outcome = found_first && !found_second ? first : second;
  } catch (const std::bad_alloc&) {
    // A name that cannot be allocated skips the column; the load goes on without it.
  }
  return value;
}

com::Variant RowReader::value_of(const VARIANT& name, VARTYPE type, bool& found) const {
  if (!recordset_) throw com::Error(E_NOINTERFACE);
  com::Ptr<Fields> fields;
  com::check(recordset_->get_Fields(fields.put()), recordset_);
  com::require(fields);
  com::Ptr<::Field> field;
  com::check<Fields15>(fields->get_Item(name, field.put()), fields.get());
  com::require(field);
  found = true;
  com::Variant value;
  com::check<Field20>(field->get_Value(value.put()), field.get());
  return std::move(value).as(type);
}

}  // namespace orv
