#include "modeldb/engine/database.h"

#include <sqlite3.h>

#include <new>
#include <utility>

#include "modeldb/engine/client_text.h"
#include "modeldb/engine/failure.h"
#include "modeldb/engine/model_file.h"
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
  database->open_file();
  database->protect();
  database->check_identity(newest_version);
  database->choose_journal();
  return database;
}

Database::Database(std::wstring_view path) : path_(full_path(path)) {}

Database::~Database() { close(); }

void Database::open_file() {
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXRESCODE |
                         SQLITE_OPEN_NOMUTEX;  // its users live in one apartment
  const int result = sqlite3_open_v2(to_utf8(path_).c_str(), &handle_, kFlags, nullptr);
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
                                             {SQLITE_LIMIT_SQL_LENGTH, 1'000'000},
                                             {SQLITE_LIMIT_EXPR_DEPTH, 200},
                                             {SQLITE_LIMIT_COMPOUND_SELECT, 50},
                                             {SQLITE_LIMIT_VDBE_OP, 250'000},
                                             {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 1000},
                                             {SQLITE_LIMIT_ATTACHED, 0},
                                             {SQLITE_LIMIT_WORKER_THREADS, 0}};
  for (const auto& [limit, value] : kLimits) sqlite3_limit(handle_, limit, value);

  sqlite3_drop_modules(handle_, nullptr);
  sqlite3_busy_timeout(handle_, kBusyTimeoutMilliseconds);
  authorizer_.install(handle_);
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
  in_transaction_ = false;
  end_client_transaction(TransactionEvent::kRolledBack);
  observer_ = nullptr;
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

TextResult Database::execute_text(std::wstring_view text, Trust trust) {
  require_open();
  if (trust != Trust::kWrite && !is_query(text)) {
    fail(kPermissionDenied, L"The text " + quoted(text) +
                                L" was refused: only a SELECT is allowed here. Execute changes "
                                L"through the connection of the model database.");
  }
  switch (read_client_text(text, bound_)) {
    case TextKind::kBegin:
      begin();
      return {};
    case TextKind::kCommit:
      commit();
      return {};
    case TextKind::kRollback:
      rollback();
      return {};
    case TextKind::kSelect:
      return {prepare_bound(Trust::kRead)};
    default:
      return {{}, run(*prepare_bound(Trust::kWrite))};
  }
}

/// The statement of the text that was read last, with its values.
StatementLease Database::prepare_bound(Trust author) {
  StatementLease statement = prepare_as(author, bound_.text);
  statement->bind_all(bound_.values);
  return statement;
}

void Database::begin() {
  try {
    if (in_transaction_) {
      fail(kInvalidTransaction, L"A transaction is open in the model database " + quoted(path_) +
                                    L" already. Commit it or roll it back before you begin "
                                    L"another.");
    }
    start_transaction();
  } catch (...) {
    if (observer_) observer_->on_transaction(TransactionEvent::kRefused);
    throw;
  }
  is_client_transaction_ = true;
}

void Database::commit() {
  require_transaction();
  try {
    finish_transaction();
  } catch (...) {
    end_client_transaction(TransactionEvent::kRolledBack);
    throw;
  }
  end_client_transaction(TransactionEvent::kCommitted);
}

void Database::rollback() {
  require_transaction();
  roll_back();
  end_client_transaction(TransactionEvent::kRolledBack);
}

void Database::end_client_transaction(TransactionEvent event) noexcept {
  const bool was_open = std::exchange(is_client_transaction_, false);
  if (was_open && observer_) observer_->on_transaction(event);
}

void Database::start_transaction() {
  was_changed_ = is_changed();
  // Immediate: another program's lock is met here, not in the middle of the work.
  execute(L"BEGIN IMMEDIATE");
  in_transaction_ = true;
}

void Database::finish_transaction() {
  try {
    require_transaction_alive();
    execute(L"COMMIT");
  } catch (...) {
    roll_back();
    throw;
  }
  in_transaction_ = false;
}

void Database::roll_back() noexcept {
  in_transaction_ = false;
  authorizer_.begin(Trust::kHost);
  // Fails only when SQLite has rolled back already.
  sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
  if (!was_changed_) total_unchanged_ = sqlite3_total_changes64(handle_);
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

void Database::require_transaction() const {
  require_open();
  if (in_transaction_) return;
  fail(kInvalidTransaction,
       L"No transaction is open in the model database " + quoted(path_) + L". Begin one first.");
}

bool Database::has_lost_transaction() const {
  return in_transaction_ && sqlite3_get_autocommit(handle_);
}

void Database::require_transaction_alive() const {
  if (!has_lost_transaction()) return;
  fail(kInvalidTransaction,
       L"The transaction in the model database " + quoted(path_) +
           L" was undone after an earlier failure, and nothing of it is saved. Roll it back if you "
           L"have not ended it yet; then remove the cause, and try the whole of it again.");
}

std::wstring Database::text_of(sqlite3_stmt* statement) {
  const std::unique_ptr<char, decltype(&sqlite3_free)> text(sqlite3_expanded_sql(statement),
                                                            &sqlite3_free);
  return from_utf8(text ? text.get() : sqlite3_sql(statement));
}

void Database::fail_with(int result, std::wstring_view sql) const {
  const std::wstring reason =
      handle_ ? static_cast<const wchar_t*>(sqlite3_errmsg16(handle_)) : L"";
  const std::wstring file = L"The model database " + quoted(path_);
  const std::wstring statement = L"The statement " + quoted(sql);
  switch (result & 0xFF) {
    case SQLITE_NOMEM:
      throw std::bad_alloc();
    case SQLITE_AUTH:
      fail(kPermissionDenied,
           statement + L" was refused: it would " + authorizer_.refused() +
               L". Only the rows of the model's tables can be read, and through the connection "
               L"changed.");
    case SQLITE_CONSTRAINT:
      if (result == SQLITE_CONSTRAINT_TRIGGER) {
        fail(kIntegrityViolation, statement + L" was not run: " + reason + L".");
      }
      if (result == SQLITE_CONSTRAINT_FOREIGNKEY) {
        fail(kIntegrityViolation,
             statement +
                 L" was not run: it would link to a row that the model does not have, or "
                 L"leave such a link behind. Save what is linked to first.");
      }
      fail(kIntegrityViolation, statement +
                                    L" was not run, because its values break a rule of the "
                                    L"table: " +
                                    reason + L". Change the values.");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      fail(kLocked, file +
                        L" is in use, by another program or by this one. End the "
                        L"transaction or close the recordset there, or try again later.");
    case SQLITE_CANTOPEN:
      fail(kCannotOpenFile, file +
                                L" cannot be opened. Check that the folder exists and that you "
                                L"may write there.");
    case SQLITE_NOTADB:
      fail_as_no_model(path_);
    case SQLITE_CORRUPT:
      fail(kCannotReadFile, file + L" is damaged (" + reason +
                                L"). Take a copy of the file that "
                                L"was saved earlier.");
    case SQLITE_READONLY:
    case SQLITE_PERM:
      fail(kCannotWriteFile, file + L" cannot be written (" + reason +
                                 L"). Check that the file and its folder are not write-protected.");
    case SQLITE_FULL:
      fail(kCannotWriteFile, file + L" cannot grow: the disk is full. Make room and try again.");
    case SQLITE_IOERR:
      fail(kCannotReadFile, file + L" could not be read or written (" + reason +
                                L"). Check the disk, and the connection to it.");
    case SQLITE_ABORT:
      fail(kIllegalOperation, L"The rows of the statement " + quoted(sql) +
                                  L" are gone, because the transaction was rolled back. Open the "
                                  L"recordset again.");
    default:
      fail(kErrorsInCommand, statement + L" cannot be run: " + reason + L". Correct it.");
  }
}

}  // namespace modeldb
