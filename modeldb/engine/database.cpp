#include "modeldb/engine/database.h"

#include <sqlite3.h>

#include <new>
#include <utility>

#include "modeldb/engine/client_text.h"
#include "modeldb/engine/failure.h"
#include "modeldb/engine/model_file.h"
#include "modeldb/engine/sqlite_failure.h"
#include "modeldb/engine/utf8.h"

namespace modeldb {
namespace {

/// How long a statement waits for another program that has the file locked.
constexpr int kBusyTimeoutMilliseconds = 5000;
/// Enough for the pages that a large transaction changes, so that it need not spill them.
constexpr std::int64_t kCacheKibibytes = 65536;

}  // namespace

std::shared_ptr<Database> Database::open(std::wstring_view path, int newest_version) {
  const std::shared_ptr<Database> database(new Database(path));
  require_model_header(database->path(), newest_version);
  database->is_made_ = !file_exists(database->path());
  try {
    database->open_file();
    database->protect();
    database->check_identity(newest_version);
    database->choose_journal();
  } catch (...) {
    database->discard();
    throw;
  }
  return database;
}

Database::Database(std::wstring_view path) : path_(full_path(path)) {}

Database::~Database() { close(); }

void Database::open_file() {
  constexpr int kFlags =
      SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX;  // its users live in one apartment
  // Some file systems let the administrator write a protected file nevertheless.
  const int access =
      is_write_protected(path_) ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int result = sqlite3_open_v2(to_utf8(path_).c_str(), &handle_, kFlags | access, nullptr);
  if ((result & 0xFF) == SQLITE_CANTOPEN) fail_to_open(path_);
  if (result != SQLITE_OK) fail_with(result, L"");
}

/// A file may come from anywhere: its schema can run nothing, and a client's text can only do what
/// the authorizer allows.
void Database::protect() {
  constexpr std::pair<int, int> kSwitches[] = {
      {SQLITE_DBCONFIG_DEFENSIVE, 1},      {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
      {SQLITE_DBCONFIG_ENABLE_TRIGGER, 0}, {SQLITE_DBCONFIG_ENABLE_VIEW, 0},
      {SQLITE_DBCONFIG_DQS_DDL, 0},        {SQLITE_DBCONFIG_DQS_DML, 0},
      {SQLITE_DBCONFIG_ENABLE_FKEY, 1}};
  for (const auto& [option, value] : kSwitches) sqlite3_db_config(handle_, option, value, nullptr);

  constexpr std::pair<int, int> kLimits[] = {{SQLITE_LIMIT_LENGTH, kMaximumLength},
                                             {SQLITE_LIMIT_SQL_LENGTH, 16'000'000},
                                             {SQLITE_LIMIT_EXPR_DEPTH, 200},
                                             {SQLITE_LIMIT_COMPOUND_SELECT, 50},
                                             {SQLITE_LIMIT_VDBE_OP, 5'000'000},
                                             {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 1000},
                                             {SQLITE_LIMIT_ATTACHED, 0},
                                             {SQLITE_LIMIT_WORKER_THREADS, 0}};
  for (const auto& [limit, value] : kLimits) sqlite3_limit(handle_, limit, value);

  sqlite3_drop_modules(handle_, nullptr);
  wait_for_locks();
  authorizer_.install(handle_);
  time_limit_.install(handle_);
}

/// The header may be older than what SQLite finds, such as the journal of a process that died.
void Database::check_identity(int newest_version) {
  const FileIdentity identity{.application_id = setting(L"application_id"),
                              .schema_version = schema_version(),
                              .has_tables = has_tables()};
  require_model(identity, path_, newest_version);
  if (identity.is_blank()) set_setting(L"application_id", kApplicationId);
}

bool Database::has_tables() {
  const auto tables = query(L"SELECT count(*) FROM sqlite_schema");
  return tables->step() && tables->integer(0) != 0;
}

/// A rollback journal, synchronised with the disk: a process or machine that dies leaves the last
/// committed state.
void Database::choose_journal() {
  execute(L"PRAGMA journal_mode = DELETE");
  execute(L"PRAGMA synchronous = FULL");
  // temp_store stays at its default: what a savepoint may have to undo then lies in one block of
  // memory. With MEMORY it lies in many small ones, which a savepoint for each record feels.
  set_setting(L"cache_size", -kCacheKibibytes);  // negative: in KiB, not in pages
}

void Database::close() {
  if (!handle_) return;
  // Leases may still hold statements; they find them gone.
  while (sqlite3_stmt* const statement = sqlite3_next_stmt(handle_, nullptr)) {
    sqlite3_finalize(statement);
  }
  // Closing rolls back what is not committed.
  sqlite3_close(std::exchange(handle_, nullptr));
  transactions_.forget();
}

void Database::discard() {
  const bool was_open = is_open();
  close();
  if (was_open && is_made_) remove_file(path_);
}

bool Database::is_read_only() {
  require_open();
  return is_known_read_only() || !transactions_.can_write();
}

int Database::schema_version() { return static_cast<int>(setting(L"user_version")); }

void Database::set_schema_version(int version) { set_setting(L"user_version", version); }

std::int64_t Database::setting(std::wstring_view name) {
  const auto statement = prepare(L"PRAGMA " + std::wstring(name));
  return statement->step() ? statement->integer(0) : 0;
}

void Database::set_setting(std::wstring_view name, std::int64_t value) {
  execute(L"PRAGMA " + std::wstring(name) + L" = " + std::to_wstring(value));
}

StatementLease Database::prepare_as(Trust author, std::wstring_view sql) {
  return cache_.lease(*this, sql, author);
}

std::int64_t Database::run(Statement& statement) {
  const auto before = total_changes();
  while (statement.step()) {
  }
  return total_changes() - before;
}

TextResult Database::execute_text(std::wstring_view text, Trust trust, Seconds time_limit) {
  require_open();
  if (trust != Trust::kWrite && !is_query(text)) {
    fail_on_text(kPermissionDenied, L"The text " + quoted(text),
                 L" was refused: only a SELECT is allowed here. Execute changes through the "
                 L"connection of the model database.");
  }
  switch (read_client_text(text, bound_)) {
    case TextKind::kBegin:
      transactions_.begin();
      return {};
    case TextKind::kCommit:
      transactions_.commit();
      return {};
    case TextKind::kRollback:
      transactions_.rollback();
      return {};
    case TextKind::kSelect:
      return {prepare_bound(text, Trust::kRead, time_limit)};
    default:
      require_writable();
      return {{}, run(*prepare_bound(text, Trust::kWrite, time_limit))};
  }
}

/// The statement of `text`, which was read last, with its values.
StatementLease Database::prepare_bound(std::wstring_view text, Trust author, Seconds time_limit) {
  StatementLease statement = [&] {
    try {
      return prepare_as(author, bound_.text);
    } catch (const TextError& error) {
      // The client knows its own text, not what was made of it.
      fail_on_text(error.result(), L"The statement " + quoted(text), error.clause());
    }
  }();
  statement->limit_time(time_limit);
  statement->bind_all(bound_.values);
  return statement;
}

std::int64_t Database::last_insert_id() const {
  require_open();
  return sqlite3_last_insert_rowid(handle_);
}

std::int64_t Database::total_changes() const {
  require_open();
  return sqlite3_total_changes64(handle_);
}

void Database::require_open() const {
  if (is_open()) return;
  fail(kObjectClosed, L"The model database " + quoted(path_) +
                          L" is closed. Open it again, and take connections and recordsets from "
                          L"it anew.");
}

bool Database::is_known_read_only() const {
  return is_protected_ || sqlite3_db_readonly(handle_, "main") == 1;
}

void Database::require_writable() const {
  if (is_known_read_only()) fail_with(SQLITE_READONLY, {});
}

void Database::wait_for_locks() { sqlite3_busy_timeout(handle_, kBusyTimeoutMilliseconds); }

std::wstring Database::text_of(sqlite3_stmt* statement) {
  const std::unique_ptr<char, decltype(&sqlite3_free)> text(sqlite3_expanded_sql(statement),
                                                            &sqlite3_free);
  return from_utf8(text ? text.get() : sqlite3_sql(statement));
}

void Database::fail_with(int result, std::wstring_view sql) const {
  if (result == SQLITE_NOTADB) fail_as_no_model(path_);
  if (result == SQLITE_AUTH && authorizer_.lacked_memory()) throw std::bad_alloc();
  if (result == SQLITE_FULL) explain_full();
  const std::wstring words = handle_ ? static_cast<const wchar_t*>(sqlite3_errmsg16(handle_)) : L"";
  fail_as_sqlite({.result = result,
                  .reason = result == SQLITE_AUTH ? authorizer_.refused() : words,
                  .path = path_,
                  .sql = sql});
}

/// SQLite says the same of a disk without room and of a table without keys.
void Database::explain_full() const {
  sqlite3_stmt* used_up = nullptr;
  sqlite3_prepare_v2(handle_, "SELECT name FROM sqlite_sequence WHERE seq = 9223372036854775807",
                     -1, &used_up, nullptr);
  const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> owner(used_up,
                                                                         &sqlite3_finalize);
  if (used_up && sqlite3_step(used_up) == SQLITE_ROW) {
    fail_as_used_up(static_cast<const wchar_t*>(sqlite3_column_text16(used_up, 0)));
  }
}

}  // namespace modeldb
