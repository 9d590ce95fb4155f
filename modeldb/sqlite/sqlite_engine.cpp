#include "modeldb/sqlite/sqlite_engine.h"

#include <sqlite3.h>

#include "modeldb/sqlite/row_rules.h"
#include "modeldb/sqlite/sqlite_file.h"
#include "modeldb/sqlite/sqlite_recorder.h"
#include "modeldb/sqlite/sqlite_schema.h"
#include "modeldb/sqlite/sqlite_statement.h"

namespace modeldb {
namespace {

/// SQLite, with one file open.
class SqliteEngine final : public Engine {
 public:
  SqliteEngine(std::wstring_view path, int newest_version) : file_(path) {
    file_.open(newest_version);
  }

  [[nodiscard]] const std::wstring& location() const override { return file_.path(); }
  [[nodiscard]] bool is_open() const override { return file_.is_open(); }
  void close() noexcept override { file_.close(); }
  void discard() noexcept override { file_.discard(); }

  [[nodiscard]] bool is_read_only() override { return file_.is_read_only(); }
  void require_writable() const override { file_.require_writable(); }

  [[nodiscard]] std::unique_ptr<Statement> prepare(std::wstring_view sql, Trust author) override {
    return std::make_unique<SqliteStatement>(file_, sql, author);
  }
  // Where a statement has the key, SQLite looks for a row that has it already.
  [[nodiscard]] bool gives_keys_unasked() const override { return true; }
  [[nodiscard]] std::int64_t last_insert_id() const override {
    file_.require_open();
    return sqlite3_last_insert_rowid(file_.handle());
  }
  [[nodiscard]] std::int64_t total_changes() const override {
    file_.require_open();
    return sqlite3_total_changes64(file_.handle());
  }

  // One program writes a file at a time; the others are told soon.
  [[nodiscard]] std::int64_t last_given_key(const TableDefinition& table) override {
    SqliteStatement row(file_, L"SELECT seq FROM sqlite_sequence WHERE name = ?", Trust::kHost);
    row.bind(1, std::wstring_view(table.name));
    return row.step() ? row.integer(0) : 0;
  }
  [[nodiscard]] bool is_shared() const override { return false; }
  void limit_waiting(Seconds) override {}

  void begin() override { file_.begin(); }
  void commit() override { file_.commit(); }
  void rollback() noexcept override { file_.rollback(); }
  void begin_savepoint() override { file_.begin_savepoint(); }
  void release_savepoint() override { file_.release_savepoint(); }
  void undo_savepoint() noexcept override { file_.undo_savepoint(); }
  void restart_savepoint() noexcept override { file_.restart_savepoint(); }

  [[nodiscard]] bool has_table(std::wstring_view name) override {
    // Names of tables are compared without regard to case.
    SqliteStatement& found = file_.statement(
        L"SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ? COLLATE NOCASE");
    found.bind(1, name);
    const bool has = found.step();
    found.reset();
    return has;
  }
  [[nodiscard]] std::unique_ptr<Schema> read_schema() override {
    return std::make_unique<SqliteSchema>(file_);
  }

  [[nodiscard]] RowRecorder* recorder() override { return &recorder_; }

  void guard(const RowGuard& rows) override { guard_rows(file_, rows); }
  void keep_links(const LinkedRows& rows) override { modeldb::keep_links(file_, rows); }

 private:
  SqliteFile file_;
  SqliteRecorder recorder_{file_};
};

}  // namespace

std::shared_ptr<Database> open_file(std::wstring_view path, int newest_version) {
  return std::make_shared<Database>(std::make_unique<SqliteEngine>(path, newest_version));
}

}  // namespace modeldb
