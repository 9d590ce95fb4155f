#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>

#include "modeldb/engine/row_recorder.h"
#include "modeldb/sqlite/replayed_table.h"
#include "modeldb/sqlite/row_change.h"

namespace modeldb {

/// Takes changes back, or repeats them, row by row and exactly: while this lives, neither triggers
/// nor rules between tables do anything of their own. For use in a transaction; what fails leaves
/// it to the caller to undo that.
class Replayer {
 public:
  explicit Replayer(SqliteFile& file);
  Replayer(const Replayer&) = delete;
  Replayer& operator=(const Replayer&) = delete;
  ~Replayer();

  /// Goes through the stream backwards (`undo`) or forwards, up to the first row that is not as it
  /// was left; that raises kIntegrityViolation with a sentence.
  void replay(std::string_view stream, std::span<const RecordedTable> tables, bool undo);

 private:
  void repeat(std::string_view stream, std::span<const RecordedTable> tables);
  void take_back(std::string_view stream, std::span<const RecordedTable> tables);
  void apply(const RowChange& change, const RowPair& rows, std::span<const RecordedTable> tables,
             bool undo);
  ReplayedTable& table(const RecordedTable& recorded);

  SqliteFile& file_;
  std::map<std::wstring, ReplayedTable> tables_;
};

}  // namespace modeldb
