#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "modeldb/engine/authorizer.h"
#include "modeldb/engine/statement.h"
#include "modeldb/engine/statement_cache.h"
#include "modeldb/engine/transactions.h"
#include "modeldb/engine/turns.h"

struct sqlite3;

namespace modeldb {

/// What became of a client's text.
struct TextResult {
  StatementLease query;           ///< empty unless the text is a query
  std::int64_t changed_rows = 0;  ///< by a text that is none
};

/// A model database file, opened: its statements and its transactions. Objects that work on it
/// share it (std::shared_ptr); after close() each of their calls fails with kObjectClosed.
///
/// Foreign keys are enforced, statement by statement.
/// A process that dies leaves the file as it was before the transaction that was open.
class Database : public std::enable_shared_from_this<Database> {
 public:
  /// Opens the model database at `path`, or makes an empty one where there is no file or an empty
  /// one. The schema of a new one is the caller's to make (schema_version() is 0).
  /// kCannotOpenFile: no path, not accessible, not an SQLite database, not a model database, or one
  /// whose schema is newer than `newest_version`; the file is left as it was.
  static std::shared_ptr<Database> open(std::wstring_view path,
                                        int newest_version = std::numeric_limits<int>::max());
  ~Database();

  /// Rolls back what is not committed and closes the file, whoever still holds statements.
  void close();
  /// Closes the file, and removes it if open() made it: nothing became of it.
  void discard();
  [[nodiscard]] bool is_open() const { return handle_ != nullptr; }
  /// The full path of the file.
  [[nodiscard]] const std::wstring& path() const { return path_; }

  /// The line of the threads that use it. Whoever calls a member, or releases a statement, has the
  /// turn; the database itself begins none.
  [[nodiscard]] const std::shared_ptr<Turns>& turns() const { return turns_; }
  /// Has its users stand in another line, before there are any.
  void share(std::shared_ptr<Turns> turns) { turns_ = std::move(turns); }

  /// What the file says of its schema; 0 in a new one.
  [[nodiscard]] int schema_version();
  void set_schema_version(int version);

  // The model database's own statements. `sql` is a text with parameters (?), kept in the cache.

  /// The statement, ready for bind and step.
  StatementLease prepare(std::wstring_view sql) { return prepare_as(Trust::kHost, sql); }

  /// The statement with `values` bound to its parameters in order, ready for step.
  template <class... Values>
  StatementLease query(std::wstring_view sql, const Values&... values) {
    StatementLease statement = prepare(sql);
    int parameter = 0;
    (statement->bind(++parameter, values), ...);
    return statement;
  }

  /// Runs the statement to its end and returns the number of rows that it changed.
  template <class... Values>
  std::int64_t execute(std::wstring_view sql, const Values&... values) {
    return run(*query(sql, values...));
  }

  // Texts of clients, as they reach ADO's objects. Only SELECT, INSERT, UPDATE and DELETE on the
  // model's tables pass (Trust::kRead: SELECT alone), one statement at a time, without parameters;
  // a refused text fails with kPermissionDenied before anything is done. Tables whose names begin
  // with "orv_" are the model database's own and out of reach.

  /// How long such a text may run; what a text is not given its own limit takes.
  [[nodiscard]] Seconds time_limit() const { return client_time_limit_; }
  void set_time_limit(Seconds limit) { client_time_limit_ = limit; }

  /// A query comes back with its literals bound, ready for step. Anything else is run at once;
  /// BEGIN, COMMIT and ROLLBACK TRANSACTION are those of transactions().
  TextResult execute_text(std::wstring_view text, Trust trust) {
    return execute_text(text, trust, client_time_limit_);
  }
  TextResult execute_text(std::wstring_view text, Trust trust, Seconds time_limit);

  [[nodiscard]] Transactions& transactions() { return transactions_; }
  /// Whether the file or its folder is write-protected: then it can be read alone.
  [[nodiscard]] bool is_read_only();

  /// Key of the row that was inserted last.
  [[nodiscard]] std::int64_t last_insert_id() const;
  /// Rows changed since the database was opened, by whatever statement, undone ones included.
  [[nodiscard]] std::int64_t total_changes() const;
  /// Whether rows changed since mark_unchanged(), those apart whose change was undone.
  [[nodiscard]] bool is_changed() const { return total_changes() != total_unchanged_; }
  void mark_unchanged() { total_unchanged_ = total_changes(); }

 private:
  friend class Statement;
  friend class Transactions;

  explicit Database(std::wstring_view path);

  void open_file();
  void protect();
  void check_identity(int newest_version);
  [[nodiscard]] bool has_tables();
  void choose_journal();

  StatementLease prepare_as(Trust author, std::wstring_view sql);
  StatementLease prepare_bound(std::wstring_view text, Trust author, Seconds time_limit);
  std::int64_t run(Statement& statement);
  [[nodiscard]] std::int64_t setting(std::wstring_view name);
  void set_setting(std::wstring_view name, std::int64_t value);

  void wait_for_locks();
  void require_open() const;
  /// kCannotWriteFile: the file is write-protected.
  void require_writable() const;
  [[nodiscard]] bool is_known_read_only() const;

  /// Raises what SQLite answered, with a sentence. `sql` is the statement's text.
  [[noreturn]] void fail_with(int result, std::wstring_view sql) const;
  /// Raises what a result "full" means when the disk is not.
  void explain_full() const;
  /// The text of a statement with its values.
  static std::wstring text_of(sqlite3_stmt* statement);

  std::wstring path_;
  std::shared_ptr<Turns> turns_ = std::make_shared<Turns>();
  sqlite3* handle_ = nullptr;
  bool is_made_ = false;  // there was no file before
  Authorizer authorizer_;
  TimeLimit time_limit_;
  StatementCache cache_;
  // Kept for their capacity:
  BoundText bound_;   // the client text that was read last
  std::string utf8_;  // the text that was bound last
  Transactions transactions_{*this};
  Seconds client_time_limit_ = kDefaultTimeLimit;
  bool is_protected_ = false;  // what the last attempt to begin a transaction has shown
  std::int64_t total_unchanged_ = 0;
};

}  // namespace modeldb
