#pragma once

#include <oaidl.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "com/variant.h"

namespace modeldb {

/// An array that a client passed, locked for as long as this lives: whoever holds it can neither
/// resize nor free it meanwhile.
class LockedArray {
 public:
  /// `type` is that of the elements.
  LockedArray(SAFEARRAY* array, VARTYPE type);
  LockedArray(const LockedArray&) = delete;
  LockedArray& operator=(const LockedArray&) = delete;
  ~LockedArray() { SafeArrayUnaccessData(array_); }

  [[nodiscard]] UINT dimensions() const { return SafeArrayGetDim(array_); }
  /// The number of indexes of a dimension, counted from 1, whatever its lower bound.
  [[nodiscard]] std::size_t length(UINT dimension) const;
  [[nodiscard]] std::size_t size() const;
  /// The element at a position in memory, where the first index runs fastest. Borrowed until the
  /// next call.
  [[nodiscard]] const VARIANT& at(std::size_t position);

 private:
  SAFEARRAY* array_;
  VARTYPE type_;
  const std::byte* data_ = nullptr;
  VARIANT element_{};
};

/// The rows that a client passes: a two-dimensional array, of variants or of one type, with any
/// lower bounds; an array of rows that are arrays; either as JScript's own arrays; or an object
/// whose value is such an array, such as a range of cells.
class Cells {
 public:
  /// Raises, with a sentence, when the argument is none of these, or when a row has not as many
  /// cells as there are `columns`.
  Cells(const VARIANT& argument, std::size_t columns);

  [[nodiscard]] std::size_t rows() const { return rows_; }
  /// Counted from 0. Borrowed until the next call.
  [[nodiscard]] const VARIANT& get(std::size_t row, std::size_t column);

 private:
  void take(const VARIANT& argument);
  void take_table();
  void take_row(const VARIANT& row);

  std::size_t columns_;
  std::size_t rows_ = 0;
  com::Variant value_;                // of an object that was passed
  std::optional<LockedArray> table_;  // two-dimensional; otherwise all cells are in copies_
  std::vector<com::Variant> copies_;
};

/// The texts of a list that a client passes: an array in any of the forms above, of one or two
/// dimensions, or one text with commas in between. Raises, with a sentence, when it is none of
/// these.
std::vector<std::wstring> list_of_texts(const VARIANT& argument);

}  // namespace modeldb
