#include "modeldb/engine/statement.h"

#include <sqlite3.h>

#include <utility>

#include "modeldb/engine/database.h"
#include "modeldb/engine/failure.h"

namespace modeldb {
namespace {

bool is_blank(const void* rest, const wchar_t* end) {
  const auto* const begin = static_cast<const wchar_t*>(rest);
  return std::wstring_view(begin, end - begin).find_first_not_of(L" \t\r\n;") ==
         std::wstring_view::npos;
}

}  // namespace

Statement::Statement(Database& database, std::wstring_view sql, Trust trust)
    : database_(database), trust_(trust) {
  database.require_open();
  database.authorizer_.begin(trust);
  const void* rest = nullptr;
  const int result = sqlite3_prepare16_v3(database.handle_, sql.data(),
                                          static_cast<int>(sql.size() * sizeof(wchar_t)),
                                          SQLITE_PREPARE_PERSISTENT, &statement_, &rest);
  if (result != SQLITE_OK) database.fail_with(result, sql);
  if (!statement_ || !is_blank(rest, sql.data() + sql.size())) {
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
  check_bind(sqlite3_bind_text16(live(), parameter, value.data() ? value.data() : L"",
                                 static_cast<int>(value.size() * sizeof(wchar_t)),
                                 SQLITE_TRANSIENT));
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
    database_.require_transaction_alive();
    // SQLite compiles a statement anew when the schema has changed.
    database_.authorizer_.begin(trust_);
  }
  const int result = sqlite3_step(statement);
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
