#include "modeldb/engine/statement.h"

#include <sqlite3.h>

#include <string>
#include <utility>

#include "modeldb/engine/database.h"
#include "modeldb/engine/failure.h"
#include "modeldb/engine/utf8.h"

namespace modeldb {
namespace {

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

[[noreturn]] void fail_on_length(std::wstring_view text) {
  fail(kInvalidArgument, L"The text " + quoted(text) + L" of " + std::to_wstring(text.size()) +
                             L" characters is too long: a model database has room for " +
                             std::to_wstring(kMaximumLength) + L" bytes. Shorten it.");
}

}  // namespace

Statement::Statement(Database& database, std::wstring_view sql, Trust trust)
    : database_(database), trust_(trust) {
  database.require_open();
  database.authorizer_.begin(trust);
  const std::string text = to_utf8(sql);
  const char* rest = nullptr;
  const int result =
      sqlite3_prepare_v3(database.handle_, text.data(), static_cast<int>(text.size()),
                         SQLITE_PREPARE_PERSISTENT, &statement_, &rest);
  // SQLite itself reports a refused function as an unknown one.
  const bool refused = result == SQLITE_ERROR && database.authorizer_.has_refused();
  if (result != SQLITE_OK) database.fail_with(refused ? SQLITE_AUTH : result, sql);
  if (!statement_ || !is_blank({rest, text.data() + text.size()})) {
    sqlite3_finalize(statement_);
    fail(kErrorsInCommand, L"The text " + quoted(sql) + L" is not one statement. Write one.");
  }
}

Statement::~Statement() {
  // Closing the database has finalised all statements.
  if (database_.is_open()) sqlite3_finalize(statement_);
}

sqlite3_stmt* Statement::live() const {
  database_.require_open();
  return statement_;
}

void Statement::check_bind(int result) const {
  if (result != SQLITE_OK) database_.fail_with(result, database_.text_of(statement_));
}

void Statement::bind(int parameter, std::int64_t value) {
  check_bind(sqlite3_bind_int64(live(), parameter, value));
}

void Statement::bind(int parameter, double value) {
  check_bind(sqlite3_bind_double(live(), parameter, value));
}

void Statement::bind(int parameter, std::wstring_view value) {
  sqlite3_stmt* const statement = live();
  // Every character takes at least a byte.
  if (value.size() > kMaximumLength) fail_on_length(value);
  constexpr std::size_t kLong = 65536;
  std::string not_kept;
  const auto text = to_utf8(value, value.size() < kLong ? database_.utf8_ : not_kept);
  const int result = sqlite3_bind_text64(statement, parameter, text.data(), text.size(),
                                         SQLITE_TRANSIENT, SQLITE_UTF8);
  if (result == SQLITE_TOOBIG) fail_on_length(value);
  check_bind(result);
}

void Statement::bind(int parameter, std::nullptr_t) {
  check_bind(sqlite3_bind_null(live(), parameter));
}

void Statement::bind(int parameter, const Literal& value) {
  std::visit([&](auto held) { bind(parameter, held); }, value);
}

void Statement::bind_all(std::span<const Literal> values) {
  int parameter = 0;
  for (const Literal& value : values) bind(++parameter, value);
}

bool Statement::step() {
  sqlite3_stmt* const statement = live();
  if (!sqlite3_stmt_busy(statement)) {
    database_.transactions_.require_alive();
    // SQLite compiles a statement anew when the schema has changed.
    database_.authorizer_.begin(trust_);
  }
  const int result = [&] {
    const TimeLimit::Step step(database_.time_limit_, time_limit_, spent_);
    return sqlite3_step(statement);
  }();
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  try {
    database_.fail_with(result, database_.text_of(statement));
  } catch (...) {
    sqlite3_reset(statement);
    throw;
  }
}

void Statement::reset() {
  // The result repeats the failure of the last step, which was reported there.
  sqlite3_reset(live());
  spent_ = 0;
}

std::size_t Statement::memory() const {
  return static_cast<std::size_t>(sqlite3_stmt_status(live(), SQLITE_STMTSTATUS_MEMUSED, 0));
}

bool Statement::is_open() const { return database_.is_open(); }

void Statement::require_open() const { database_.require_open(); }

const Columns& Statement::columns() {
  if (!columns_) columns_.emplace(live());
  return *columns_;
}

Statement::Type Statement::type(int column) const {
  return static_cast<Type>(sqlite3_column_type(live(), column));
}

std::int64_t Statement::integer(int column) const { return sqlite3_column_int64(live(), column); }

double Statement::real(int column) const { return sqlite3_column_double(live(), column); }

std::wstring_view Statement::text(int column) const {
  const void* const text = sqlite3_column_text16(live(), column);
  if (!text) return {};
  return {static_cast<const wchar_t*>(text),
          sqlite3_column_bytes16(statement_, column) / sizeof(wchar_t)};
}

std::span<const std::byte> Statement::blob(int column) const {
  const void* const bytes = sqlite3_column_blob(live(), column);
  return {static_cast<const std::byte*>(bytes),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::size_t Statement::size(int column) const {
  switch (type(column)) {
    case Type::kNull:
      return 0;
    case Type::kInteger:
      return sizeof(std::int64_t);
    case Type::kReal:
      return sizeof(double);
    case Type::kText:
      return text(column).size() * sizeof(wchar_t);
    case Type::kBlob:
      return blob(column).size();
  }
  return 0;
}

void Statement::release() {
  in_use_ = false;
  time_limit_ = 0;
  spent_ = 0;
  if (!database_.is_open()) return;
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

StatementLease::StatementLease(std::shared_ptr<Database> database, Statement& cached)
    : database_(std::move(database)), statement_(&cached) {
  cached.in_use_ = true;
}

StatementLease::StatementLease(std::shared_ptr<Database> database, std::unique_ptr<Statement> own)
    : database_(std::move(database)), own_(std::move(own)), statement_(own_.get()) {}

StatementLease::StatementLease(StatementLease&& other) noexcept
    : database_(std::move(other.database_)),
      own_(std::move(other.own_)),
      statement_(std::exchange(other.statement_, nullptr)) {}

StatementLease& StatementLease::operator=(StatementLease other) noexcept {
  std::swap(database_, other.database_);
  std::swap(own_, other.own_);
  std::swap(statement_, other.statement_);
  return *this;
}

StatementLease::~StatementLease() {
  if (statement_ && !own_) statement_->release();
}

}  // namespace modeldb
