#include "modeldb/sqlite/sqlite_file.h"

#include <sqlite3.h>

#include <new>
#include <utility>

#include "modeldb/base/failure.h"
#include "modeldb/engine/engine.h"
#include "modeldb/sqlite/model_file.h"
#include "modeldb/sqlite/sqlite_failure.h"
#include "modeldb/sqlite/sqlite_statement.h"
#include "modeldb/sqlite/utf8.h"

namespace modeldb {
namespace {

/// How long a statement waits for another program that has the file locked.
constexpr int kBusyTimeoutMilliseconds = 5000;
/// Enough for the pages that a large transaction changes, so that it need not spill them.
constexpr std::int64_t kCacheKibibytes = 65536;

// Every record that is saved or deleted begins and ends a savepoint.
const FixedText kBeginSavepoint(L"SAVEPOINT level");
const FixedText kReleaseSavepoint(L"RELEASE level");

}  // namespace

SqliteFile::SqliteFile(std::wstring_view path) : path_(full_path(path)) {}

SqliteFile::~SqliteFile() { close(); }

void SqliteFile::open(int newest_version) {
  require_model_header(path_, newest_version);
  is_made_ = !file_exists(path_);
  if (is_made_) require_room_for_journal(path_);
  try {
    open_handle();
    protect();
    check_identity(newest_version);
    choose_journal();
  } catch (...) {
    discard();
    throw;
  }
}

void SqliteFile::open_handle() {
  constexpr int kFlags =
      SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX;  // its users stand in one line
  // Some file systems let the administrator write a protected file nevertheless.
  const int access =
      is_write_protected(path_) ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int result = sqlite3_open_v2(to_utf8(path_).c_str(), &handle_, kFlags | access, nullptr);
  if ((result & 0xFF) == SQLITE_CANTOPEN) fail_to_open(path_);
  if (result != SQLITE_OK) fail_with(result, L"");
}

/// A file may come from anywhere: its schema can run nothing, and a client's text can only do what
/// the authorizer allows.
void SqliteFile::protect() {
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
  recorder_.install(handle_);
}

/// The header may be older than what SQLite finds, such as the journal of a process that died.
void SqliteFile::check_identity(int newest_version) {
  const FileIdentity identity{.application_id = setting(L"application_id"),
                              .schema_version = schema_version(),
                              .has_tables = has_tables()};
  require_model(identity, path_, newest_version);
  if (identity.is_blank()) set_setting(L"application_id", kApplicationId);
}

bool SqliteFile::has_tables() {
  SqliteStatement tables(*this, L"SELECT count(*) FROM sqlite_schema", Trust::kHost);
  return tables.step() && tables.integer(0) != 0;
}

/// A rollback journal, synchronised with the disk: a process or machine that dies leaves the last
/// committed state.
void SqliteFile::choose_journal() {
  run(L"PRAGMA journal_mode = DELETE");
  run(L"PRAGMA synchronous = FULL");
  // temp_store stays at its default: what a savepoint may have to undo then lies in one block of
  // memory. With MEMORY it lies in many small ones, which a savepoint for each record feels.
  set_setting(L"cache_size", -kCacheKibibytes);  // negative: in KiB, not in pages
}

void SqliteFile::close() noexcept {
  if (!handle_) return;
  // Leases may still hold statements; they find them gone.
  while (sqlite3_stmt* const statement = sqlite3_next_stmt(handle_, nullptr)) {
    sqlite3_finalize(statement);
  }
  // Closing rolls back what is not committed.
  sqlite3_close(std::exchange(handle_, nullptr));
  recorder_.end();
  is_begun_ = false;
}

void SqliteFile::discard() noexcept {
  const bool was_open = is_open();
  close();
  if (was_open && is_made_) remove_file(path_);
}

void SqliteFile::require_open() const {
  if (!is_open()) fail_as_closed(path_);
}

SqliteStatement& SqliteFile::statement(std::wstring_view sql) {
  const auto kept = statements_.find(sql);
  if (kept != statements_.end()) return *kept->second;
  auto made = std::make_unique<SqliteStatement>(*this, sql, Trust::kHost);
  return *statements_.emplace(sql, std::move(made)).first->second;
}

SqliteStatement& SqliteFile::statement(const FixedText& sql) {
  if (fixed_.size() <= sql.number()) fixed_.resize(sql.number() + 1);
  SqliteStatement*& known = fixed_[sql.number()];
  if (!known) known = &statement(sql.text());
  return *known;
}

void SqliteFile::run_kept(SqliteStatement& kept) {
  kept.run();
  kept.reset();
}

void SqliteFile::run_quietly(const char* sql) noexcept {
  authorizer_.begin(Trust::kHost);
  sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr);
}

int SqliteFile::schema_version() { return static_cast<int>(setting(L"user_version")); }

void SqliteFile::set_schema_version(int version) { set_setting(L"user_version", version); }

std::int64_t SqliteFile::setting(std::wstring_view name) {
  SqliteStatement& kept = statement(L"PRAGMA " + std::wstring(name));
  const std::int64_t value = kept.step() ? kept.integer(0) : 0;
  kept.reset();
  return value;
}

void SqliteFile::set_setting(std::wstring_view name, std::int64_t value) {
  run(L"PRAGMA " + std::wstring(name) + L" = " + std::to_wstring(value));
}

/// SQLite begins transactions on files that it cannot write, too. So something is written, which
/// makes it open its journal.
void SqliteFile::begin() {
  require_writable();
  start();
}

void SqliteFile::start() {
  // Immediate: another program's lock is met here, not in the middle of the work.
  run(L"BEGIN IMMEDIATE");
  try {
    set_schema_version(schema_version());
  } catch (...) {
    note_protection();
    run_quietly("ROLLBACK");
    throw;
  }
  is_begun_ = true;
}

/// What is known of the file refuses statements outside a transaction, too, also those that would
/// find no row to change.
void SqliteFile::note_protection() {
  const int result = sqlite3_errcode(handle_) & 0xFF;
  is_protected_ = result == SQLITE_CANTOPEN || result == SQLITE_READONLY || result == SQLITE_PERM;
}

void SqliteFile::commit() {
  run(L"COMMIT");
  recorder_.end();
  is_begun_ = false;
}

void SqliteFile::rollback() noexcept {
  run_quietly("ROLLBACK");
  recorder_.end();
  is_begun_ = false;
}

void SqliteFile::begin_savepoint() {
  recorder_.reserve_part();
  run(kBeginSavepoint);
  recorder_.begin_part();
}

void SqliteFile::release_savepoint() {
  run(kReleaseSavepoint);
  recorder_.keep_part();
}

void SqliteFile::undo_savepoint() noexcept {
  run_quietly("ROLLBACK TO level; RELEASE level");
  recorder_.undo_part();
}

void SqliteFile::restart_savepoint() noexcept {
  run_quietly("ROLLBACK TO level");
  recorder_.restart_part();
}

void SqliteFile::require_alive() const {
  if (is_begun_ && sqlite3_get_autocommit(handle_)) fail_as_lost(path_);
}

std::int64_t SqliteFile::change_counter() const {
  // The header as sqlite.org/fileformat2.html describes it; numbers are big-endian.
  constexpr int kReadVersion = 19;
  constexpr int kCounter = 24;
  constexpr int kCounterSize = 4;
  constexpr unsigned char kWriteAheadLog = 2;
  unsigned char header[kCounter + kCounterSize] = {};
  sqlite3_file* file = nullptr;
  sqlite3_file_control(handle_, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
  if (!file || !file->pMethods) return 0;
  const int result = file->pMethods->xRead(file, header, sizeof header, 0);
  // A file that was just made is still too short.
  if (result != SQLITE_OK && result != SQLITE_IOERR_SHORT_READ) return 0;
  if (header[kReadVersion] == kWriteAheadLog) return 0;
  std::int64_t counter = 0;
  for (int i = 0; i < kCounterSize; ++i) counter = counter << 8 | header[kCounter + i];
  return counter;
}

void SqliteFile::enforce_foreign_keys(bool on) noexcept {
  if (handle_) sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_FKEY, on ? 1 : 0, nullptr);
}

bool SqliteFile::is_read_only() {
  if (is_known_read_only()) return true;
  if (is_begun_) return false;
  sqlite3_busy_timeout(handle_, 0);
  try {
    start();
    rollback();
  } catch (...) {
    // What does not last, such as a lock, is told to those who write.
  }
  wait_for_locks();
  return is_protected_;
}

bool SqliteFile::is_known_read_only() const {
  // What has begun has written something.
  return is_protected_ || (!is_begun_ && sqlite3_db_readonly(handle_, "main") == 1);
}

void SqliteFile::require_writable() const {
  if (is_known_read_only()) fail_with(SQLITE_READONLY, {});
}

void SqliteFile::wait_for_locks() { sqlite3_busy_timeout(handle_, kBusyTimeoutMilliseconds); }

void SqliteFile::fail_with(int result, std::wstring_view sql) const {
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
void SqliteFile::explain_full() const {
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
