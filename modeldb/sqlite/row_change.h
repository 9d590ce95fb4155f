#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/sqlite/row_bytes.h"

namespace modeldb {

/// One row that was inserted, updated or deleted, in a stream of such changes: a letter, the number
/// of the table, and the row before and the row after, whichever there is. A row is its number in
/// SQLite (its key), how many values it has, and the values. It is written as the difference from
/// another one: the row after an update from the row before, any other from the first row of the
/// change of the same table that came before, unless that is to be forgotten.
struct RowChange {
  enum class Kind : char { kInserted = 'I', kUpdated = 'U', kDeleted = 'D' };

  Kind kind;
  std::uint64_t table;    ///< its number among the tables of the stream
  std::string_view rows;  ///< see RowReader
  bool forgets = false;   ///< the changes that came before
};

/// Writes what stands before the rows of a change.
void write_head(RowWriter& out, const RowChange& change);

/// Goes through the changes of a stream. Fails as damaged.
class RowChanges {
 public:
  explicit RowChanges(std::string_view stream) : rest_(stream) {}
  /// False at the end.
  bool next(RowChange& change);

 private:
  RowBytes rest_;
};

/// A row that was kept as bytes.
struct KeptRow {
  std::int64_t key = 0;
  std::vector<RowValue> values;
};

/// A row before and after a change. One that was inserted has no values before, one that was
/// deleted has none after.
struct RowPair {
  KeptRow before;
  KeptRow after;
};

/// Reads the rows of changes, in their order; from the first of a stream on, or from one that
/// forgets the others.
class RowReader {
 public:
  void read(const RowChange& change, RowPair& rows);

 private:
  std::map<std::uint64_t, KeptRow> first_rows_;  // by table, of the last change
};

}  // namespace modeldb
