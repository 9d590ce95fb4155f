#pragma once

#include <vector>

#include "com/variant.h"
#include "modeldb/engine/statement.h"

namespace modeldb {

/// Rows of a query, gathered for a two-dimensional array of variants with the lower bounds 0.
class RowArray {
 public:
  explicit RowArray(int width) : width_(static_cast<std::size_t>(width)) {}

  /// Adds the row at which the query stands.
  void append(const Statement& row);
  /// Adds a row with the names of the columns.
  void append_names(const Columns& columns);

  /// The values as an array: field, row. They are moved, so that nothing is left.
  [[nodiscard]] com::Variant by_field();
  /// The same as an array: row, field.
  [[nodiscard]] com::Variant by_row();

 private:
  [[nodiscard]] std::size_t rows() const {
    // PostgreSQL has rows without columns, which nobody can tell from none.
    return width_ == 0 ? 0 : values_.size() / width_;
  }

  std::size_t width_;
  std::vector<com::Variant> values_;  // row after row
};

}  // namespace modeldb
