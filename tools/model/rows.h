#pragma once

#include <msado15_backcompat.h>

#include <cstddef>
#include <string>
#include <vector>

#include "com/ptr.h"
#include "com/variant.h"

namespace model {

struct Column {
  std::string name;
  bool is_whole = false;  ///< the table declares it for whole numbers
};

/// The rows of a query, from the first to the last. They are fetched many at a time: a call for
/// each value would cost more than the query.
///
///     for (Rows rows = database.query(L"SELECT …"); rows.next();) use(rows.integer(0));
class Rows {
 public:
  /// Takes an open recordset.
  explicit Rows(com::Ptr<_Recordset> recordset) : recordset_(std::move(recordset)) {}

  /// Moves on to the next row, at first to the first one; false behind the last.
  bool next();

  // A column of the current row, from 0. NULL is 0 and empty.
  [[nodiscard]] long integer(std::size_t column) const;
  [[nodiscard]] double real(std::size_t column) const;
  /// NULL is no number, where 0 would be a value.
  [[nodiscard]] double real_or_nan(std::size_t column) const;
  [[nodiscard]] std::string text(std::size_t column) const;
  [[nodiscard]] const VARIANT& value(std::size_t column) const;

  /// The number of columns, once next() was called.
  [[nodiscard]] std::size_t width() const { return width_; }
  [[nodiscard]] std::vector<Column> columns() const;

 private:
  bool fetch();
  /// The value as another type; raises, with a sentence, when it is none such.
  [[nodiscard]] com::Variant as(std::size_t column, VARTYPE type) const;

  com::Ptr<_Recordset> recordset_;
  com::Variant block_;  // two-dimensional, field by row
  std::size_t width_ = 0;
  std::size_t height_ = 0;
  std::size_t next_ = 0;  // in the block
};

}  // namespace model
