#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/sqlite/row_bytes.h"

namespace modeldb {

/// One row that was inserted, updated or deleted, in a stream of such changes.
struct RowChange {
  enum class Kind : char { kInserted = 'I', kUpdated = 'U', kDeleted = 'D' };

  Kind kind;
  std::uint64_t table;    ///< its number among the tables of the stream
  std::string_view body;  ///< see RowPair
};

/// A row before and after a change, with SQLite's number of it. One that was inserted has no values
/// before, one that was deleted has none after.
struct RowPair {
  std::int64_t old_key = 0;
  std::int64_t new_key = 0;
  std::vector<RowValue> old_values;
  std::vector<RowValue> new_values;

  /// The body of a change: for each of the rows that it has the key, the number of values and the
  /// values; those of the second that are as in the first are written as such.
  void read(const RowChange& change);
};

void append_change(std::string& out, const RowChange& change);

/// Goes through the changes of a stream. Raises kCannotReadFile when it is damaged.
class RowChanges {
 public:
  explicit RowChanges(std::string_view stream) : rest_(stream) {}
  /// False at the end.
  bool next(RowChange& change);

 private:
  RowBytes rest_;
};

}  // namespace modeldb
