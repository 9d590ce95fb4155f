#include "modeldb/ado/row_array.h"

#include <new>

#include "modeldb/ado/value.h"

namespace modeldb {
namespace {

/// An array of variants, and the place of its elements: the first index runs fastest.
VARIANT* make_array(std::size_t first, std::size_t second, com::Variant& out) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(first), 0}, {static_cast<ULONG>(second), 0}};
  VARIANT* const array = out.put();
  array->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  if (!array->parray) throw std::bad_alloc();
  array->vt = VT_ARRAY | VT_VARIANT;
  return static_cast<VARIANT*>(array->parray->pvData);
}

}  // namespace

void RowArray::append(const Statement& row) {
  for (std::size_t column = 0; column < width_; ++column) {
    read_value(row, static_cast<int>(column), values_.emplace_back().put());
  }
}

void RowArray::append_names(const Columns& columns) {
  for (std::size_t column = 0; column < width_; ++column) {
    values_.emplace_back(com::Bstr(columns.name(static_cast<int>(column))));
  }
}

com::Variant RowArray::by_field() {
  com::Variant result;
  VARIANT* const elements = make_array(width_, rows(), result);
  for (std::size_t i = 0; i < values_.size(); ++i) elements[i] = values_[i].detach();
  return result;
}

com::Variant RowArray::by_row() {
  com::Variant result;
  const std::size_t height = rows();
  VARIANT* const elements = make_array(height, width_, result);
  for (std::size_t i = 0; i < values_.size(); ++i) {
    elements[i / width_ + i % width_ * height] = values_[i].detach();
  }
  return result;
}

}  // namespace modeldb
