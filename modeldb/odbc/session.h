#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "modeldb/engine/statement.h"
#include "modeldb/odbc/background.h"
#include "modeldb/odbc/connection_text.h"
#include "modeldb/odbc/diagnosis.h"
#include "modeldb/odbc/direct_query.h"
#include "modeldb/odbc/driver_manager.h"
#include "modeldb/odbc/rows_ahead.h"
#include "modeldb/odbc/write_queue.h"

namespace modeldb {

class OdbcStatement;
class RowStream;

/// A connection to a server: what the statements on it share.
class Session {
 public:
  /// kCannotOpenFile: it is no connection string.
  explicit Session(std::wstring_view location);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  /// kCannotOpenFile: the server cannot be reached, or does not let us in.
  void connect();
  /// Rolls back what is not committed; statements that are left are gone.
  void disconnect() noexcept;
  [[nodiscard]] bool is_open() const { return is_open_; }
  /// kObjectClosed: it was closed. kInvalidConnection: it was lost.
  void require_open() const;
  [[nodiscard]] const std::wstring& location() const { return text_.shown; }

  /// For a statement, which takes part until it is released. Handles of statements do not outlive
  /// the connection.
  StatementHandle allocate(OdbcStatement* owner);
  void release(OdbcStatement* owner) noexcept;

  // The engine's own work.

  /// Runs a text without parameters and result, behind what waits.
  void run(std::wstring_view sql);
  /// Runs what waited, or a part of the transaction's frame; `shown` is its text in a sentence.
  /// When it fails the transaction is lost.
  void send(std::wstring_view sql, std::wstring_view shown);
  /// All rows of a query without parameters, beside what waits.
  [[nodiscard]] ResultRows rows_of(const std::wstring& sql);
  /// For such queries in another thread, as long as the connection is open.
  [[nodiscard]] DirectQuery direct_query();
  /// The texts of a query's first row, beside what waits; none when it fails.
  std::vector<std::wstring> ask(std::wstring_view sql) noexcept;
  /// Runs what can fail only when there is nothing to undo any more.
  void run_quietly(const wchar_t* sql) noexcept;

  // Its transaction, which reaches the server with its first statement.

  /// Statements within it wait for the locks of others, until one has waited in vain: the others
  /// may wait for this transaction, and rows would be refused one by one, each after its time.
  void begin();
  /// kInvalidTransaction: the server had to roll back by itself.
  void commit();
  void rollback() noexcept;
  [[nodiscard]] bool is_in_transaction() const { return is_begun_; }
  /// As require_open. kInvalidTransaction: the transaction is lost.
  void require_alive() const;
  /// As require_alive. kInvalidConnection: the server, which is asked, does not answer.
  void require_reachable();
  /// What the transaction has written and the server does not know yet.
  [[nodiscard]] WriteQueue& queue() { return queue_; }

  /// How long a statement waits for rows that another program is changing.
  void limit_waiting(Seconds limit) { waiting_ = limit; }
  /// Tells the server what has changed of that. Before a statement.
  void prepare_to_run();

  [[nodiscard]] bool is_read_only() const { return is_read_only_; }
  void set_read_only(bool is) { is_read_only_ = is; }

  /// Raises what the call on the handle of a statement answered, with a sentence. A text that
  /// `writes_rows` tells whether they were kept.
  [[noreturn]] void fail_with(SQLHANDLE statement, std::wstring_view sql, bool writes_rows = false);
  [[noreturn]] void fail_with(const Diagnosis& diagnosis, std::wstring_view sql,
                              bool writes_rows = false);

  /// Work on the connection in another thread, for which all other work on it has to wait. It knows
  /// nothing of the session.
  [[nodiscard]] Background& background() { return background_; }
  void wait_for_background() noexcept { background_.wait(); }
  /// A query is about to be read by a cursor, which lives in a transaction: in one of its own, if
  /// there is none. Only one is at a time; what is left of an earlier one is fetched.
  void begin_reading(RowStream& stream);
  /// It needs the transaction no more, if it was its own. Does not wait for the server.
  void end_reading() noexcept;
  void leave(const RowStream& stream) noexcept;
  /// What is being read.
  [[nodiscard]] RowStream* stream() const { return stream_; }
  /// Before what a cursor would not survive, or must not be part of its transaction.
  void finish_reading() noexcept;
  /// That no other cursor has.
  [[nodiscard]] std::wstring new_cursor_name() { return L"orv_" + std::to_wstring(++cursors_); }

  /// What was fetched before it is asked for.
  [[nodiscard]] RowsAhead& rows_ahead() { return rows_ahead_; }

  // What became of statements.

  [[nodiscard]] std::int64_t last_insert_id() const { return last_insert_id_; }
  void set_last_insert_id(std::int64_t id) { last_insert_id_ = id; }
  [[nodiscard]] std::int64_t total_changes() const { return total_changes_; }
  void add_changes(std::int64_t rows) { total_changes_ += rows; }

  /// How the model spells a name that the server has in small letters.
  [[nodiscard]] std::wstring spelled(const std::wstring& name) const;
  /// A table of the model, and how its names are spelled.
  void learn(const TableDefinition& table);

 private:
  [[nodiscard]] long long milliseconds_to_wait() const;
  void run_alone(std::wstring_view sql, std::wstring_view shown, bool writes_rows = false);
  void learn_spelling(std::wstring_view name);
  void set_automatic(bool is_automatic) noexcept;
  /// Whether the server is still there.
  [[nodiscard]] bool answers() noexcept;
  /// Whether the connection is, for all that is said of a failure.
  [[nodiscard]] bool is_lost(const Diagnosis& diagnosis) noexcept;
  [[noreturn]] void fail_as_closed_or_lost() const;
  [[noreturn]] void fail_to_commit();
  [[noreturn]] void fail_as_unknown() const;

  const ConnectionText text_;
  EnvironmentHandle environment_;
  ConnectionHandle connection_;
  StatementHandle own_;
  std::set<OdbcStatement*> statements_;
  Background background_;
  int cursors_ = 0;
  RowStream* stream_ = nullptr;
  bool is_reading_ = false;  // in a transaction of the stream's own
  RowsAhead rows_ahead_{*this};
  WriteQueue queue_{*this};
  bool is_undone_ = false;  // the transaction, though nobody has ended it
  bool is_open_ = false;
  bool is_lost_ = false;  // found broken; a commit must not be believed from then on
  bool is_begun_ = false;
  bool is_read_only_ = false;
  Seconds waiting_ = kDefaultTimeLimit;
  bool has_waited_in_vain_ = false;        // the transaction, which keeps others waiting
  std::optional<long long> waiting_told_;  // in milliseconds
  bool is_told_within_ = false;            // the transaction, with which it would be undone
  bool has_failed_ = false;                // a statement of the transaction
  std::int64_t last_insert_id_ = 0;
  std::int64_t total_changes_ = 0;
  std::map<std::wstring, std::wstring, std::less<>> spelling_;
};

/// In a transaction: only one program at a time makes tables and triggers. Its number is that of
/// model databases.
inline constexpr std::wstring_view kMakingLock = L"SELECT pg_advisory_xact_lock(1330796100)";

/// In small letters, as the server folds a name.
std::wstring folded_name(std::wstring_view name);

}  // namespace modeldb
