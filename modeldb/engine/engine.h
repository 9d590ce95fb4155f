#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "modeldb/engine/change_board.h"
#include "modeldb/engine/fetch_ahead.h"
#include "modeldb/engine/row_recorder.h"
#include "modeldb/engine/schema.h"
#include "modeldb/engine/statement.h"

namespace modeldb {

/// A database engine with one database open: all that differs from one engine to another, with
/// Statement and Schema. Database keeps what holds for every engine: statements that are used
/// again, transactions one inside the other, the texts of clients.
///
/// Every member that can fail does so with a sentence (base/failure.h): kObjectClosed once the
/// database is closed, otherwise what the engine answered.
class Engine {
 public:
  Engine() = default;
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  /// Closes the database.
  virtual ~Engine() = default;

  /// By what the database is known to its users, in sentences too: the path of a file. It never
  /// holds a password.
  [[nodiscard]] virtual const std::wstring& location() const = 0;
  [[nodiscard]] virtual bool is_open() const = 0;
  /// Rolls back what is not committed. Statements that are left find their database closed.
  virtual void close() noexcept = 0;
  /// Closes, and removes what opening has made: nothing became of it.
  virtual void discard() noexcept = 0;

  /// Whether nothing can be written, as far as can be told without waiting.
  [[nodiscard]] virtual bool is_read_only() = 0;
  /// kInvalidConnection: nobody is there any more.
  virtual void require_reachable() {}
  /// kCannotWriteFile: it is known that nothing can be written.
  virtual void require_writable() const = 0;

  /// Compiles a text for its author, who may do what Trust says and nothing else: what goes beyond
  /// is refused with kPermissionDenied before anything is done. `sql` is one statement, with a
  /// question mark for each parameter. What is wrong with it is raised as a TextError.
  [[nodiscard]] virtual std::unique_ptr<Statement> prepare(std::wstring_view sql, Trust author) = 0;
  /// Whether a new row is inserted best by a statement without the column of its key, which it gets
  /// all the same. Otherwise the key is NULL.
  [[nodiscard]] virtual bool gives_keys_unasked() const { return false; }
  /// Key of the row that was inserted last.
  [[nodiscard]] virtual std::int64_t last_insert_id() const = 0;
  /// The greatest key that the table has ever given a row, or taken from one; 0 when it had none.
  [[nodiscard]] virtual std::int64_t last_given_key(const TableDefinition& table) = 0;
  /// Rows changed since the database was opened, by whatever statement, undone ones included.
  [[nodiscard]] virtual std::int64_t total_changes() const = 0;

  /// Whether several programs change rows at the same time, so that a row may have become another
  /// one since it was read, without anybody having waited.
  [[nodiscard]] virtual bool is_shared() const = 0;
  /// How long statements wait for rows that another program is changing, if the engine lets several
  /// change rows at a time.
  virtual void limit_waiting(Seconds limit) = 0;

  // One transaction, and savepoints in it that end in the reverse order of their beginning. Engine
  // and statements raise kInvalidTransaction, by fail_as_lost, from the moment when the engine had
  // to roll back by itself until rollback(): nothing may be written in the belief that it is part
  // of a transaction that is lost.

  /// Fails with a sentence when nothing can be written: later, the failures of single records would
  /// be all that is seen of it. kLocked: another program writes.
  virtual void begin() = 0;
  virtual void commit() = 0;
  virtual void rollback() noexcept = 0;
  virtual void begin_savepoint() = 0;
  virtual void release_savepoint() = 0;
  virtual void undo_savepoint() noexcept = 0;
  /// Undoes what was done since the innermost savepoint began, which goes on.
  virtual void restart_savepoint() noexcept = 0;

  [[nodiscard]] virtual bool has_table(std::wstring_view name) = 0;
  [[nodiscard]] virtual std::unique_ptr<Schema> read_schema() = 0;

  /// Records what changes, for what can be undone; null when the engine cannot.
  [[nodiscard]] virtual RowRecorder* recorder() { return nullptr; }

  /// Tells what other programs change; null when the engine does not know.
  [[nodiscard]] virtual ChangeBoard* change_board() { return nullptr; }

  /// Within a transaction: others who claim the same name wait until it ends. Not needed where one
  /// transaction writes at a time.
  virtual void claim(std::wstring_view name) { (void)name; }

  /// All rows of another table are about to go into this one, under their keys: until the
  /// transaction ends nobody else writes to it.
  virtual void reserve(const TableDefinition& table) { (void)table; }

  /// Takes hints of what is asked for next; null when the engine has no use for them.
  [[nodiscard]] virtual FetchAhead* fetch_ahead() { return nullptr; }

  // Rules that hold, whoever changes rows, from here until the database is closed.

  /// Refuses to delete or renumber a row that others stand on (kIntegrityViolation).
  virtual void guard(const RowGuard& rows) = 0;
  /// The links of a row go with it, and follow it to another key, so that no later row of its key
  /// inherits them.
  virtual void keep_links(const LinkedRows& rows) = 0;
};

/// Raises kObjectClosed.
[[noreturn]] void fail_as_closed(std::wstring_view location);
/// Raises kInvalidTransaction: the engine has rolled back by itself.
[[noreturn]] void fail_as_lost(std::wstring_view location);
/// Raises kIntegrityViolation: the table has no keys left for new rows.
[[noreturn]] void fail_as_used_up(std::wstring_view table);
/// Raises kCannotReadFile: what was recorded for undoing is not what was written.
[[noreturn]] void fail_as_damaged_history();

}  // namespace modeldb
