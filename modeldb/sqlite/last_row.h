#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "modeldb/sqlite/row_bytes.h"

namespace modeldb {

/// A row that was written, with copies of its values, so that others can be written as the
/// difference from it.
class LastRow {
 public:
  [[nodiscard]] std::int64_t key() const { return key_; }
  void set_key(std::int64_t key) { key_ = key; }

  /// Whether the row has this very value in the column.
  [[nodiscard]] bool has(std::size_t column, const RowValue& value) const;
  void set(std::size_t column, const RowValue& value);

  void forget() noexcept;

 private:
  struct Value {
    RowValue::Type type = RowValue::Type::kSame;  // none
    std::int64_t integer = 0;
    double real = 0;
    std::string bytes;
  };

  std::int64_t key_ = 0;
  std::vector<Value> values_;
};

}  // namespace modeldb
