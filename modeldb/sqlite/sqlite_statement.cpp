#include "modeldb/sqlite/sqlite_statement.h"

#include <sqlite3.h>

#include <memory>
#include <new>
#include <string>
#include <utility>

#include "modeldb/base/failure.h"
#include "modeldb/sqlite/sqlite_file.h"
#include "modeldb/sqlite/utf8.h"

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

/// SQLite's answer; empty when it has none.
std::wstring text_or_empty(const void* text) {
  return text ? std::wstring(static_cast<const wchar_t*>(text)) : std::wstring();
}

}  // namespace

SqliteStatement::SqliteStatement(SqliteFile& file, std::wstring_view sql, Trust trust)
    : file_(file), trust_(trust) {
  file.require_open();
  file.authorizer().begin(trust);
  const std::string text = to_utf8(sql);
  const char* rest = nullptr;
  const int result = sqlite3_prepare_v3(file.handle(), text.data(), static_cast<int>(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement_, &rest);
  // SQLite itself reports a refused function as an unknown one.
  const bool refused = result == SQLITE_ERROR && file.authorizer().has_refused();
  if (result != SQLITE_OK) file.fail_with(refused ? SQLITE_AUTH : result, sql);
  if (!statement_ || !is_blank({rest, text.data() + text.size()})) {
    sqlite3_finalize(statement_);
    fail(kErrorsInCommand, L"The text " + quoted(sql) + L" is not one statement. Write one.");
  }
}

SqliteStatement::~SqliteStatement() {
  // Closing the file has finalised all statements.
  if (file_.is_open()) sqlite3_finalize(statement_);
}

sqlite3_stmt* SqliteStatement::live() const {
  file_.require_open();
  return statement_;
}

void SqliteStatement::check_bind(int result) const {
  if (result != SQLITE_OK) file_.fail_with(result, expanded_sql());
}

std::wstring SqliteStatement::expanded_sql() const {
  const std::unique_ptr<char, decltype(&sqlite3_free)> text(sqlite3_expanded_sql(statement_),
                                                            &sqlite3_free);
  return from_utf8(text ? text.get() : sqlite3_sql(statement_));
}

void SqliteStatement::bind(int parameter, std::int64_t value) {
  check_bind(sqlite3_bind_int64(live(), parameter, value));
}

void SqliteStatement::bind(int parameter, double value) {
  check_bind(sqlite3_bind_double(live(), parameter, value));
}

void SqliteStatement::bind(int parameter, std::wstring_view value) {
  sqlite3_stmt* const statement = live();
  // Every character takes at least a byte.
  if (value.size() > kMaximumLength) fail_on_length(value);
  constexpr std::size_t kLong = 65536;
  std::string not_kept;
  const auto text = to_utf8(value, value.size() < kLong ? file_.utf8() : not_kept);
  const int result = sqlite3_bind_text64(statement, parameter, text.data(), text.size(),
                                         SQLITE_TRANSIENT, SQLITE_UTF8);
  if (result == SQLITE_TOOBIG) fail_on_length(value);
  check_bind(result);
}

void SqliteStatement::bind(int parameter, std::nullptr_t) {
  check_bind(sqlite3_bind_null(live(), parameter));
}

void SqliteStatement::bind(int parameter, std::span<const std::byte> bytes) {
  // A null pointer would be NULL.
  const void* const data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
  check_bind(sqlite3_bind_blob64(live(), parameter, data, bytes.size(), SQLITE_STATIC));
}

void SqliteStatement::bind(int parameter, const RowValue& value) {
  switch (value.type) {
    case RowValue::Type::kInteger:
      return bind(parameter, value.integer);
    case RowValue::Type::kReal:
      return bind(parameter, value.real);
    case RowValue::Type::kText:
      return check_bind(sqlite3_bind_text64(live(), parameter, value.bytes.data(),
                                            value.bytes.size(), SQLITE_STATIC, SQLITE_UTF8));
    case RowValue::Type::kBlob:
      return bind(parameter, std::as_bytes(std::span(value.bytes)));
    default:
      return bind(parameter, nullptr);
  }
}

void SqliteStatement::bind_all(std::span<const Literal> values, int first) {
  for (const Literal& value : values) {
    std::visit([&](auto held) { SqliteStatement::bind(first, held); }, value);
    ++first;
  }
}

bool SqliteStatement::step() {
  sqlite3_stmt* const statement = live();
  if (!sqlite3_stmt_busy(statement)) {
    file_.require_alive();
    // SQLite compiles a statement anew when the schema has changed.
    file_.authorizer().begin(trust_);
  }
  const std::size_t recorded = file_.recorder().position();
  const int result = [&] {
    const TimeLimit::Step step(file_.time_limit(), time_limit_, spent_);
    return sqlite3_step(statement);
  }();
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  // What a statement did is undone when it fails, unless its text says otherwise (OR FAIL): then
  // it has changed some rows. (The total counts what triggers did even if that was undone.)
  if (sqlite3_changes64(file_.handle()) == 0) file_.recorder().truncate(recorded);
  try {
    file_.fail_with(result, expanded_sql());
  } catch (...) {
    sqlite3_reset(statement);
    throw;
  }
}

std::int64_t SqliteStatement::run() {
  require_open();
  const auto before = sqlite3_total_changes64(file_.handle());
  while (step()) {
  }
  return sqlite3_total_changes64(file_.handle()) - before;
}

void SqliteStatement::reset() {
  // The result repeats the failure of the last step, which was reported there.
  sqlite3_reset(live());
  spent_ = 0;
}

std::size_t SqliteStatement::memory() const {
  return static_cast<std::size_t>(sqlite3_stmt_status(live(), SQLITE_STMTSTATUS_MEMUSED, 0));
}

bool SqliteStatement::is_open() const { return file_.is_open(); }

void SqliteStatement::require_open() const { file_.require_open(); }

Statement::Type SqliteStatement::type(int column) const {
  switch (sqlite3_column_type(live(), column)) {
    case SQLITE_INTEGER:
      return Type::kInteger;
    case SQLITE_FLOAT:
      return Type::kReal;
    case SQLITE_TEXT:
      return Type::kText;
    case SQLITE_BLOB:
      return Type::kBlob;
    default:
      return Type::kNull;
  }
}

std::int64_t SqliteStatement::integer(int column) const {
  return sqlite3_column_int64(live(), column);
}

double SqliteStatement::real(int column) const { return sqlite3_column_double(live(), column); }

std::wstring_view SqliteStatement::text(int column) const {
  const void* const text = sqlite3_column_text16(live(), column);
  if (!text) return {};
  return {static_cast<const wchar_t*>(text),
          sqlite3_column_bytes16(statement_, column) / sizeof(wchar_t)};
}

std::span<const std::byte> SqliteStatement::blob(int column) const {
  const void* const bytes = sqlite3_column_blob(live(), column);
  return {static_cast<const std::byte*>(bytes),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

RowValue SqliteStatement::value(int column) const {
  using enum RowValue::Type;
  switch (type(column)) {
    case Type::kInteger:
      return {.type = kInteger, .integer = integer(column)};
    case Type::kReal:
      return {.type = kReal, .real = real(column)};
    case Type::kText: {
      const auto* const text =
          reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
      if (!text) throw std::bad_alloc();
      return {.type = kText,
              .bytes = {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))}};
    }
    case Type::kBlob: {
      const auto bytes = blob(column);
      return {.type = kBlob, .bytes = {reinterpret_cast<const char*>(bytes.data()), bytes.size()}};
    }
    default:
      return {};
  }
}

std::vector<ResultColumn> SqliteStatement::describe_columns() const {
  sqlite3_stmt* const statement = live();
  const int count = sqlite3_column_count(statement);
  std::vector<ResultColumn> columns;
  columns.reserve(count);
  for (int i = 0; i < count; ++i) {
    columns.push_back({.name = text_or_empty(sqlite3_column_name16(statement, i)),
                       .table = text_or_empty(sqlite3_column_table_name16(statement, i)),
                       .origin = text_or_empty(sqlite3_column_origin_name16(statement, i)),
                       .declared_type = text_or_empty(sqlite3_column_decltype16(statement, i))});
  }
  return columns;
}

std::wstring SqliteStatement::sql() const { return from_utf8(sqlite3_sql(live())); }

void SqliteStatement::clear() noexcept {
  time_limit_ = 0;
  spent_ = 0;
  if (!file_.is_open()) return;
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

}  // namespace modeldb
