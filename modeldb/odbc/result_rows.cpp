#include "modeldb/odbc/result_rows.h"

#include <algorithm>
#include <cstring>

namespace modeldb {
namespace {

const DriverManager& odbc() { return DriverManager::instance(); }

std::span<const std::byte> bytes_of(std::wstring_view text, std::size_t size) {
  return std::as_bytes(std::span(text)).first(size);
}

}  // namespace

// --- Rows ---

void ResultRows::start(std::size_t columns) {
  columns_ = columns;
  cells_.clear();
  texts_.clear();
}

void ResultRows::add(std::int64_t value) {
  cells_.push_back({.type = Type::kInteger, .integer = value, .size = 0});
}

void ResultRows::add(double value) {
  cells_.push_back({.type = Type::kReal, .real = value, .size = 0});
}

void ResultRows::add(std::wstring_view text) {
  cells_.push_back({.type = Type::kText, .place = texts_.size(), .size = text.size()});
  texts_ += text;
}

void ResultRows::add(std::span<const std::byte> bytes) {
  const std::size_t place = texts_.size();
  cells_.push_back({.type = Type::kBlob, .place = place, .size = bytes.size()});
  texts_.resize(place + (bytes.size() + 1) / sizeof(wchar_t));
  std::ranges::copy(bytes, std::as_writable_bytes(std::span(texts_)).begin() +
                               static_cast<std::ptrdiff_t>(place * sizeof(wchar_t)));
}

void ResultRows::add(std::nullptr_t) {
  cells_.push_back({.type = Type::kNull, .integer = 0, .size = 0});
}

std::int64_t ResultRows::integer(std::size_t row, std::size_t column) const {
  const Cell& found = cell(row, column);
  if (found.type == Type::kReal) return static_cast<std::int64_t>(found.real);
  return found.type == Type::kInteger ? found.integer : 0;
}

double ResultRows::real(std::size_t row, std::size_t column) const {
  const Cell& found = cell(row, column);
  if (found.type == Type::kInteger) return static_cast<double>(found.integer);
  return found.type == Type::kReal ? found.real : 0;
}

std::wstring_view ResultRows::text(std::size_t row, std::size_t column) const {
  const Cell& found = cell(row, column);
  if (found.type != Type::kText) return {};
  return std::wstring_view(texts_).substr(found.place, found.size);
}

std::span<const std::byte> ResultRows::blob(std::size_t row, std::size_t column) const {
  const Cell& found = cell(row, column);
  if (found.type != Type::kBlob) return {};
  return bytes_of(std::wstring_view(texts_).substr(found.place), found.size);
}

// --- Their place ---

ResultPlace::ResultPlace(SQLHANDLE statement, std::span<const Statement::Type> types)
    : statement_(statement) {
  columns_.reserve(types.size());  // so that they stay where they are bound
  for (const Statement::Type type : types) {
    Column& column = columns_.emplace_back(Column{.type = type, .text = {}});
    SQLSMALLINT c_type = SQL_C_WCHAR;
    SQLPOINTER place = &column.integer;
    SQLLEN size = sizeof column.integer;
    if (type == Statement::Type::kInteger) {
      c_type = SQL_C_SBIGINT;
    } else if (type == Statement::Type::kReal) {
      c_type = SQL_C_DOUBLE;
      place = &column.real;
    } else {
      if (type == Statement::Type::kBlob) c_type = SQL_C_BINARY;
      column.text.resize(kRoom);
      place = column.text.data();
      size = static_cast<SQLLEN>(kRoom * sizeof(wchar_t));
    }
    odbc().SQLBindCol(statement_, static_cast<SQLUSMALLINT>(columns_.size()), c_type, place, size,
                      &column.length);
  }
}

ResultPlace::~ResultPlace() { odbc().SQLFreeStmt(statement_, SQL_UNBIND); }

bool ResultPlace::is_whole(const Column& column) const {
  const auto end = column.type == Statement::Type::kText ? sizeof(wchar_t) : 0;
  return column.length != SQL_NO_TOTAL &&
         static_cast<std::size_t>(column.length) + end <= kRoom * sizeof(wchar_t);
}

SQLRETURN ResultPlace::fetch(ResultRows& rows) {
  const SQLRETURN result = odbc().SQLFetch(statement_);
  if (!SQL_SUCCEEDED(result)) return result;
  SQLUSMALLINT number = 0;
  for (const Column& column : columns_) {
    ++number;
    if (column.length == SQL_NULL_DATA) {
      rows.add(nullptr);
    } else if (column.type == Statement::Type::kInteger) {
      rows.add(column.integer);
    } else if (column.type == Statement::Type::kReal) {
      rows.add(column.real);
    } else if (!is_whole(column)) {
      const SQLRETURN read = read_long(number, column, rows);
      if (!SQL_SUCCEEDED(read)) return read;
    } else if (column.type == Statement::Type::kBlob) {
      rows.add(bytes_of(column.text, static_cast<std::size_t>(column.length)));
    } else {
      rows.add(std::wstring_view(column.text)
                   .substr(0, static_cast<std::size_t>(column.length) / sizeof(wchar_t)));
    }
  }
  return SQL_SUCCESS;
}

SQLRETURN ResultPlace::read_long(SQLUSMALLINT number, const Column& column, ResultRows& rows) {
  const bool is_text = column.type == Statement::Type::kText;
  const std::size_t end = is_text ? sizeof(wchar_t) : 0;
  std::size_t room = column.length == SQL_NO_TOTAL
                         ? 4 * kRoom * sizeof(wchar_t)
                         : static_cast<std::size_t>(column.length) + sizeof(wchar_t);
  std::wstring value;
  std::size_t size = 0;
  for (;;) {
    value.resize((size + room) / sizeof(wchar_t) + 1);
    SQLLEN length = 0;
    const SQLRETURN result =
        odbc().SQLGetData(statement_, number, is_text ? SQL_C_WCHAR : SQL_C_BINARY,
                          std::as_writable_bytes(std::span(value)).subspan(size).data(),
                          static_cast<SQLLEN>(room), &length);
    if (result == SQL_NO_DATA) break;
    if (!SQL_SUCCEEDED(result)) return result;
    const bool is_cut = length == SQL_NO_TOTAL || static_cast<std::size_t>(length) + end > room;
    size += is_cut ? room - end : static_cast<std::size_t>(length);
    if (!is_cut) break;
    if (length != SQL_NO_TOTAL) room = static_cast<std::size_t>(length) + sizeof(wchar_t);
  }
  if (is_text) {
    rows.add(std::wstring_view(value).substr(0, size / sizeof(wchar_t)));
  } else {
    rows.add(bytes_of(value, size));
  }
  return SQL_SUCCESS;
}

}  // namespace modeldb
