#pragma once

#include "modeldb/engine/row_recorder.h"
#include "modeldb/sqlite/sqlite_file.h"

namespace modeldb {

/// What can be undone in a file: kept by the file's Recorder, put back by a Replayer.
class SqliteRecorder final : public RowRecorder {
 public:
  explicit SqliteRecorder(SqliteFile& file) : file_(file) {}

  void make_tables() override;
  [[nodiscard]] long next_step() override;
  void begin(std::size_t limit) override { file_.recorder().begin(limit); }
  [[nodiscard]] Recording recording() override;
  void replay(std::string_view bytes, std::span<const RecordedTable> tables, bool undo) override;
  [[nodiscard]] std::int64_t change_counter() const override { return file_.change_counter(); }

 private:
  SqliteFile& file_;
};

}  // namespace modeldb
