#include "modeldb/sqlite/last_row.h"

#include <bit>

namespace modeldb {

bool LastRow::has(std::size_t column, const RowValue& value) const {
  if (column >= values_.size()) return false;
  const Value& known = values_[column];
  // Bit by bit: a negative zero is not a zero.
  return known.type == value.type && known.integer == value.integer &&
         std::bit_cast<std::uint64_t>(known.real) == std::bit_cast<std::uint64_t>(value.real) &&
         known.bytes == value.bytes;
}

void LastRow::set(std::size_t column, const RowValue& value) {
  if (column >= values_.size()) values_.resize(column + 1);
  Value& known = values_[column];
  known.bytes = value.bytes;
  known.type = value.type;
  known.integer = value.integer;
  known.real = value.real;
}

void LastRow::forget() noexcept {
  key_ = 0;
  values_.clear();
}

}  // namespace modeldb
