#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/engine/fixed_text.h"
#include "modeldb/sqlite/authorizer.h"
#include "modeldb/sqlite/recorder.h"
#include "modeldb/sqlite/time_limit.h"

struct sqlite3;
struct sqlite3_stmt;

namespace modeldb {

class SqliteStatement;

/// A model database file, opened by SQLite: what the statements on it share.
class SqliteFile {
 public:
  /// kCannotOpenFile: the path names no file.
  explicit SqliteFile(std::wstring_view path);
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;
  ~SqliteFile();

  /// Opens the file, or makes an empty one where there is none or an empty one.
  /// kCannotOpenFile: not accessible, not an SQLite database, not a model database, or one whose
  /// schema is newer than `newest_version`; the file is left as it was.
  void open(int newest_version);
  /// Rolls back what is not committed; statements that are left are gone.
  void close() noexcept;
  /// Closes the file, and removes it if open() made it.
  void discard() noexcept;
  [[nodiscard]] bool is_open() const { return handle_ != nullptr; }
  void require_open() const;
  /// The full path.
  [[nodiscard]] const std::wstring& path() const { return path_; }
  [[nodiscard]] sqlite3* handle() const { return handle_; }

  [[nodiscard]] Authorizer& authorizer() { return authorizer_; }
  [[nodiscard]] TimeLimit& time_limit() { return time_limit_; }
  [[nodiscard]] Recorder& recorder() { return recorder_; }
  /// For the text that is being bound; kept for its capacity.
  [[nodiscard]] std::string& utf8() { return utf8_; }

  // The engine's own work, by a few texts.

  /// The statement of this text, which is kept from its first use on.
  SqliteStatement& statement(std::wstring_view sql);
  SqliteStatement& statement(const FixedText& sql);
  /// Runs the statement of a text of either type.
  template <class Text>
  void run(const Text& sql) {
    run_kept(statement(sql));
  }
  /// Runs what can fail only when there is nothing to undo any more. Needs no memory.
  void run_quietly(const char* sql) noexcept;
  [[nodiscard]] int schema_version();
  void set_schema_version(int version);

  // Its transaction. SQLite may roll back by itself, for want of disk space, say.

  void begin();
  void commit();
  void rollback() noexcept;
  void begin_savepoint();
  void release_savepoint();
  void undo_savepoint() noexcept;
  /// Undoes what was done in the innermost one, which goes on.
  void restart_savepoint() noexcept;
  /// kInvalidTransaction: what was begun is lost.
  void require_alive() const;

  /// How many transactions have changed the file, whoever's, before the one that is open: the
  /// file's own count. 0 when it has none.
  [[nodiscard]] std::int64_t change_counter() const;
  /// Whether the rules between tables hold.
  void enforce_foreign_keys(bool on) noexcept;

  [[nodiscard]] bool is_read_only();
  /// kCannotWriteFile: the file is write-protected.
  void require_writable() const;

  /// Raises what SQLite answered, with a sentence. `sql` is the statement's text.
  [[noreturn]] void fail_with(int result, std::wstring_view sql) const;

 private:
  static void run_kept(SqliteStatement& kept);
  void open_handle();
  void protect();
  void check_identity(int newest_version);
  [[nodiscard]] bool has_tables();
  void choose_journal();
  [[nodiscard]] std::int64_t setting(std::wstring_view name);
  void set_setting(std::wstring_view name, std::int64_t value);

  void start();
  /// Notes whether SQLite's last answer means that the file is write-protected.
  void note_protection();
  [[nodiscard]] bool is_known_read_only() const;
  void wait_for_locks();

  /// Raises what a result "full" means when the disk is not.
  void explain_full() const;

  const std::wstring path_;
  sqlite3* handle_ = nullptr;
  bool is_made_ = false;  // there was no file before
  bool is_begun_ = false;
  bool is_protected_ = false;  // what the last attempt to begin a transaction has shown
  Authorizer authorizer_;
  TimeLimit time_limit_;
  Recorder recorder_;
  std::string utf8_;
  std::map<std::wstring, std::unique_ptr<SqliteStatement>, std::less<>> statements_;
  std::vector<SqliteStatement*> fixed_;  // those of them whose texts have numbers
};

}  // namespace modeldb
