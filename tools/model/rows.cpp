#include "tools/model/rows.h"

#include <limits>

#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace model {

bool Rows::next() {
  if (next_ == height_ && !fetch()) return false;
  ++next_;
  return true;
}

bool Rows::fetch() {
  constexpr LONG kRowsAtOnce = 4096;
  VARIANT_BOOL at_end = VARIANT_TRUE;
  com::check(recordset_->get_EOF(&at_end), recordset_);
  if (at_end) return false;
  com::check(recordset_->GetRows(kRowsAtOnce, com::Variant::omitted(), com::Variant::omitted(),
                                 block_.put()),
             recordset_);
  const SAFEARRAY& array = *block_.get().parray;
  // The bounds stand in the reverse order of the dimensions.
  width_ = array.rgsabound[1].cElements;
  height_ = array.rgsabound[0].cElements;
  next_ = 0;
  return height_ > 0;
}

const VARIANT& Rows::value(std::size_t column) const {
  const auto* const values = static_cast<const VARIANT*>(block_.get().parray->pvData);
  return values[(next_ - 1) * width_ + column];
}

long Rows::integer(std::size_t column) const {
  const VARIANT& variant = value(column);
  if (variant.vt == VT_I4) return variant.lVal;
  if (variant.vt == VT_NULL) return 0;
  return as(column, VT_I4).get().lVal;
}

double Rows::real(std::size_t column) const {
  const VARIANT& variant = value(column);
  if (variant.vt == VT_R8) return variant.dblVal;
  if (variant.vt == VT_I4) return variant.lVal;
  if (variant.vt == VT_NULL) return 0;
  return as(column, VT_R8).get().dblVal;
}

double Rows::real_or_nan(std::size_t column) const {
  return value(column).vt == VT_NULL ? std::numeric_limits<double>::quiet_NaN() : real(column);
}

std::string Rows::text(std::size_t column) const {
  const VARIANT& variant = value(column);
  if (variant.vt == VT_BSTR) return text::to_utf8(com::Bstr::view(variant.bstrVal));
  if (variant.vt == VT_NULL) return {};
  return text::to_utf8(com::Bstr::view(as(column, VT_BSTR).get().bstrVal));
}

std::vector<Column> Rows::columns() const {
  com::Ptr<Fields> fields;
  com::check(recordset_->get_Fields(fields.put()), recordset_);
  long count = 0;
  com::check(fields->get_Count(&count), fields);
  std::vector<Column> columns;
  for (long column = 0; column < count; ++column) {
    com::Ptr<Field> field;
    com::check(fields->get_Item(com::Variant(column), field.put()), fields);
    com::Bstr name;
    com::check(field->get_Name(name.put()), field);
    DataTypeEnum type = adEmpty;
    com::check(field->get_Type(&type), field);
    columns.push_back({.name = text::to_utf8(name.view()), .is_whole = type == adInteger});
  }
  return columns;
}

com::Variant Rows::as(std::size_t column, VARTYPE type) const {
  com::Variant result;
  const HRESULT converted =
      VariantChangeType(result.put(), com::mutable_address(value(column)), 0, type);
  if (FAILED(converted)) {
    com::Variant words;
    VariantChangeType(words.put(), com::mutable_address(value(column)), 0, VT_BSTR);
    const auto shown = words.type() == VT_BSTR ? com::Bstr::view(words.get().bstrVal) : L"?";
    text::fail(converted, "A row of the model has \"" + text::to_utf8(shown) + "\" as its " +
                              columns()[column].name +
                              (type == VT_I4 ? ", which is no whole number up to 2147483647."
                                             : ", which is no number.") +
                              " Correct the row.");
  }
  return result;
}

}  // namespace model
