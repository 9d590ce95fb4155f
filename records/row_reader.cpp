#include "records/row_reader.h"

#include <new>

#include "records/text.h"

namespace orv {

std::optional<com::Variant> RowReader::read(std::wstring_view column, VARTYPE type,
                                            com::Outcome& outcome) const {
  std::optional<com::Variant> value;
  try {
    com::Outcome bare_name;
    bare_name.attempt([&] { value = value_of(column, type); });
    if (!value) {
      outcome.attempt(
          [&] { value = value_of((Text() << qualifier_ << L"." << column).view(), type); });
    }
  } catch (const std::bad_alloc&) {
    // A name that cannot be allocated skips the column; the load goes on without it.
  }
  return value;
}

com::Variant RowReader::value_of(std::wstring_view name, VARTYPE type) const {
  if (!recordset_) throw com::Error(E_NOINTERFACE, __uuidof(Recordset15));
  com::Ptr<Fields> fields;
  com::check(recordset_->get_Fields(fields.put()), recordset_);
  com::Ptr<::Field> field;
  com::check<Fields15>(fields->get_Item(com::Variant(com::Bstr(name)), field.put()), fields.get());
  com::Variant value;
  com::check<Field20>(field->get_Value(value.put()), field.get());
  return value.as(type);
}

}  // namespace orv
