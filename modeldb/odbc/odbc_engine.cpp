#include "modeldb/odbc/odbc_engine.h"

#include <set>

#include "modeldb/base/failure.h"
#include "modeldb/odbc/key_rules.h"
#include "modeldb/odbc/odbc_schema.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/posted_changes.h"
#include "modeldb/odbc/row_rules.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

constexpr const wchar_t* kRelease = L"RELEASE SAVEPOINT level";
constexpr const wchar_t* kRestart = L"ROLLBACK TO SAVEPOINT level";

/// A PostgreSQL server, with one connection to a model.
class OdbcEngine final : public Engine {
 public:
  OdbcEngine(std::wstring_view location, int newest_version) : session_(location) {
    session_.connect();
    require_known(newest_version);
    session_.set_read_only(asks_read_only());
    if (!session_.is_read_only() && has_table(L"orv_changes")) changes_.drop_old();
  }

  [[nodiscard]] const std::wstring& location() const override { return session_.location(); }
  [[nodiscard]] bool is_open() const override { return session_.is_open(); }
  void close() noexcept override { session_.disconnect(); }
  // What opening makes is one transaction, of which nothing stays.
  void discard() noexcept override { session_.disconnect(); }

  [[nodiscard]] bool is_read_only() override {
    session_.set_read_only(asks_read_only());
    return session_.is_read_only();
  }
  void require_reachable() override { session_.require_reachable(); }
  void require_writable() const override {
    session_.require_open();
    if (!session_.is_read_only()) return;
    fail(kCannotWriteFile,
         L"The model " + quoted(location()) +
             (has_model_ ? L" cannot be written: the user of the connection may only read it. Ask "
                           L"its owner for the right to write."
                         : L" has no tables yet, and the user of the connection may not make them. "
                           L"Have the owner of the database open it first."));
  }

  [[nodiscard]] std::unique_ptr<Statement> prepare(std::wstring_view sql, Trust author) override {
    return std::make_unique<OdbcStatement>(session_, sql, author);
  }
  [[nodiscard]] std::int64_t last_insert_id() const override {
    session_.require_open();
    return session_.last_insert_id();
  }
  [[nodiscard]] std::int64_t last_given_key(const TableDefinition& table) override {
    OdbcStatement row(session_, L"SELECT coalesce(pg_sequence_last_value(?::regclass), 0)",
                      Trust::kHost);
    row.bind(1, std::wstring_view(name_of_keys(table)));
    return row.step() ? row.integer(0) : 0;
  }
  [[nodiscard]] std::int64_t total_changes() const override { return session_.total_changes(); }

  [[nodiscard]] bool is_shared() const override { return true; }
  void limit_waiting(Seconds limit) override { session_.limit_waiting(limit); }

  void begin() override {
    require_writable();
    session_.begin();
  }
  void commit() override { session_.commit(); }
  void rollback() noexcept override { session_.rollback(); }
  void begin_savepoint() override { session_.queue().begin_savepoint(); }
  void release_savepoint() override {
    if (!session_.queue().release_savepoint()) session_.send(kRelease, kRelease);
  }
  void restart_savepoint() noexcept override {
    if (!session_.queue().restart_savepoint()) session_.run_quietly(kRestart);
  }
  void undo_savepoint() noexcept override {
    if (session_.queue().undo_savepoint()) return;
    session_.run_quietly(kRestart);
    session_.run_quietly(kRelease);
  }

  void claim(std::wstring_view name) override {
    // The first number is that of model databases.
    OdbcStatement lock(session_, L"SELECT pg_advisory_xact_lock(1330796100, hashtext(?))::text",
                       Trust::kHost);
    lock.bind(1, name);
    (void)lock.step();
  }
  void reserve(const TableDefinition& table) override {
    session_.run(L"LOCK TABLE " + table.name + L" IN EXCLUSIVE MODE");
    session_.queue().reserve(table);
  }

  [[nodiscard]] bool has_table(std::wstring_view name) override {
    // Tables are not taken away while a model is open.
    const std::wstring folded = folded_name(name);
    if (known_tables_.contains(folded)) return true;
    OdbcStatement found(session_,
                        L"SELECT 1 FROM pg_class WHERE relnamespace = "
                        L"current_schema()::regnamespace AND relkind = 'r' AND relname = ?",
                        Trust::kHost);
    found.bind(1, std::wstring_view(folded));
    if (!found.step()) return false;
    known_tables_.insert(folded);
    return true;
  }
  [[nodiscard]] std::unique_ptr<Schema> read_schema() override {
    return std::make_unique<OdbcSchema>(session_);
  }

  [[nodiscard]] FetchAhead* fetch_ahead() override { return &session_.rows_ahead(); }
  [[nodiscard]] ChangeBoard* change_board() override { return &changes_; }

  void guard(const RowGuard& rows) override {
    rules_.guard(rows);
    session_.queue().learn(rows);
  }
  void keep_links(const LinkedRows& rows) override { rules_.keep_links(rows); }

 private:
  void require_known(int newest_version) {
    const int version = OdbcSchema(session_).version();
    if (version <= newest_version) return;
    fail(kCannotOpenFile, L"The model " + quoted(location()) +
                              L" was made by a newer version of the model database (its schema is "
                              L"version " +
                              std::to_wstring(version) + L", this one knows version " +
                              std::to_wstring(newest_version) +
                              L"). Install that version, orv_modeldb.dll, to open it.");
  }

  /// Whether the user may neither change rows nor, where there are no tables, make them.
  [[nodiscard]] bool asks_read_only() {
    OdbcStatement row(
        session_,
        L"SELECT current_setting('transaction_read_only') = 'on' OR CASE WHEN "
        L"to_regclass('orv_model') IS NULL THEN coalesce(NOT "
        L"has_schema_privilege(current_schema(), "
        L"'CREATE'), TRUE) ELSE NOT (has_table_privilege('vertices', 'INSERT') AND "
        L"has_table_privilege('vertices', 'UPDATE') AND has_table_privilege('vertices', 'DELETE')) "
        L"END, to_regclass('orv_model') IS NOT NULL",
        Trust::kHost);
    if (!row.step()) return false;
    has_model_ = row.integer(1) != 0;
    return row.integer(0) != 0;
  }

  Session session_;
  RowRules rules_{session_};
  PostedChanges changes_{session_};
  std::set<std::wstring> known_tables_;
  bool has_model_ = true;
};

}  // namespace

std::shared_ptr<Database> open_odbc(std::wstring_view location, int newest_version) {
  return std::make_shared<Database>(std::make_unique<OdbcEngine>(location, newest_version));
}

}  // namespace modeldb
