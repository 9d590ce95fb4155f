#include "modeldb/sqlite/replayed_table.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/sqlite/utf8.h"

namespace modeldb {
namespace {

std::wstring name_in_sql(std::wstring_view name) {
  std::wstring result = L"\"";
  for (const wchar_t letter : name) result.append(letter == L'"' ? 2 : 1, letter);
  return result += L'"';
}

std::wstring parameter(int number) { return L"?" + std::to_wstring(number); }

/// "?1, ?2, ?3"
std::wstring parameters(int size) {
  std::wstring list;
  for (int i = 1; i <= size; ++i) list += (i == 1 ? L"" : L", ") + parameter(i);
  return list;
}

/// Equal as a column keeps them: SQLite hands over a whole number for a column of real ones.
bool equal(const RowValue& a, const RowValue& b) {
  if (a.is_number() && b.is_number() && a.type != b.type) {
    const RowValue& integer = a.type == RowValue::Type::kInteger ? a : b;
    const RowValue& real = a.type == RowValue::Type::kInteger ? b : a;
    return static_cast<double>(integer.integer) == real.real;
  }
  return a.type == b.type && a.integer == b.integer && a.real == b.real && a.bytes == b.bytes;
}

std::wstring shown(const RowValue& value) {
  switch (value.type) {
    case RowValue::Type::kInteger:
      return std::to_wstring(value.integer);
    case RowValue::Type::kReal: {
      char text[32];
      sqlite3_snprintf(sizeof text, text, "%.15g", value.real);
      return from_utf8(text);
    }
    case RowValue::Type::kText:
      return quoted(from_utf8(value.bytes));
    case RowValue::Type::kBlob:
      return std::to_wstring(value.bytes.size()) + L" bytes";
    default:
      return L"empty";
  }
}

int bind_row(SqliteStatement& statement, int first, const std::vector<RowValue>& values) {
  for (const RowValue& value : values) statement.bind(first++, value);
  return first;
}

/// The first column in which the row of a statement is not as it should be.
std::optional<int> difference(const SqliteStatement& row, int first,
                              const std::vector<RowValue>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int column = first + static_cast<int>(i);
    if (!equal(row.value(column), values[i])) return column;
  }
  return std::nullopt;
}

bool has_key_index(SqliteFile& file, const std::wstring& table) {
  SqliteStatement rows(file, L"PRAGMA index_list(" + name_in_sql(table) + L")", Trust::kHost);
  while (rows.step()) {
    if (rows.text(3) == L"pk") return true;
  }
  return false;
}

bool is_numbered(SqliteFile& file, const std::wstring& table) {
  SqliteStatement rows(file, L"PRAGMA table_list(" + name_in_sql(table) + L")", Trust::kHost);
  while (rows.step()) {
    if (rows.text(0) == L"main") return rows.integer(4) == 0;
  }
  return true;
}

/// A name of the row number that is not that of a column.
std::wstring row_number_of(const std::vector<std::wstring>& columns) {
  for (const auto* const name : {L"rowid", L"_rowid_", L"oid"}) {
    const auto is_taken = [&](const std::wstring& column) { return same_name(column, name); };
    if (std::ranges::none_of(columns, is_taken)) return name;
  }
  return {};
}

}  // namespace

TableLayout TableLayout::read(SqliteFile& file, const std::wstring& table) {
  TableLayout layout;
  std::vector<std::wstring> names;
  int keys = 0;
  SqliteStatement rows(file, L"PRAGMA table_xinfo(" + name_in_sql(table) + L")", Trust::kHost);
  while (rows.step()) {
    names.emplace_back(rows.text(1));
    layout.columns.push_back(name_in_sql(names.back()));
    const bool has_default = rows.type(4) != SqliteStatement::Type::kNull;
    layout.has_default.push_back(has_default && !same_name(rows.text(4), L"NULL"));
    if (rows.integer(5) != 0) ++keys;
    if (rows.integer(6) != 0) layout.fault = L"it has a column that is computed";
  }
  if (!is_numbered(file, table)) return layout;
  layout.row_number = row_number_of(names);
  layout.has_key = keys == 1 && !has_key_index(file, table);
  if (layout.row_number.empty()) layout.fault = L"its columns hide the numbers of its rows";
  return layout;
}

bool TableLayout::any_has_default() const {
  return std::ranges::find(has_default, true) != has_default.end();
}

std::wstring TableLayout::column_list() const {
  std::wstring list;
  for (const std::wstring& column : columns) list += (list.empty() ? L"" : L", ") + column;
  return list;
}

ReplayedTable::ReplayedTable(SqliteFile& file, std::wstring name, TableLayout layout)
    : file_(file),
      name_(std::move(name)),
      layout_(std::move(layout)),
      quoted_name_(name_in_sql(name_)) {}

template <class Sql>
SqliteStatement& ReplayedTable::ready(Own& statement, Sql&& sql) {
  if (statement) {
    statement->reset();
  } else {
    statement = std::make_unique<SqliteStatement>(file_, sql(), Trust::kHost);
  }
  return *statement;
}

void ReplayedTable::run(SqliteStatement& statement) {
  while (statement.step()) {
  }
  statement.reset();
}

std::wstring ReplayedTable::each_column(const wchar_t* operation, const wchar_t* between) const {
  std::wstring text;
  int number = 0;
  for (const std::wstring& column : layout_.columns) {
    text += (number == 0 ? L"" : between) + column + operation + parameter(number + 1);
    ++number;
  }
  return text;
}

std::optional<std::int64_t> ReplayedTable::find_alike(const std::vector<RowValue>& values) {
  SqliteStatement& rows = ready(find_alike_, [&] {
    const std::wstring number = has_row_numbers() ? layout_.row_number : L"0";
    return L"SELECT " + number + L", " + layout_.column_list() + L" FROM " + quoted_name_ +
           L" WHERE " + each_column(L" IS ", L" AND ");
  });
  bind_row(rows, 1, values);
  std::optional<std::int64_t> found;
  while (!found && rows.step()) {
    // The condition takes letters for each other where the column does.
    if (!difference(rows, 1, values)) found = rows.integer(0);
  }
  rows.reset();
  return found;
}

/// What becomes of the statement is the caller's: it stands at the row.
bool ReplayedTable::go_to_row(std::int64_t key) {
  SqliteStatement& row = ready(find_, [&] {
    return L"SELECT " + layout_.column_list() + L" FROM " + quoted_name_ + L" WHERE " +
           layout_.row_number + L" = ?";
  });
  row.bind(1, key);
  return row.step();
}

bool ReplayedTable::has_row(std::int64_t key) {
  const bool is_there = go_to_row(key);
  find_->reset();
  return is_there;
}

std::int64_t ReplayedTable::require_row(std::int64_t key, const std::vector<RowValue>& values) {
  const bool is_there = has_row_numbers() && go_to_row(key);
  const auto differs = is_there ? difference(*find_, 0, values) : std::nullopt;
  const std::wstring found = differs ? shown(find_->value(*differs)) : L"";
  if (find_) find_->reset();
  if (is_there && !differs) return key;
  if (!layout_.has_key) {
    if (const auto alike = find_alike(values)) return *alike;
  }
  if (!is_there || !layout_.has_key) fail_on_row(key, values, L"is gone");
  const auto column = static_cast<std::size_t>(*differs);
  fail_on_row(key, values,
              L"is another one: " + layout_.columns[column] + L" is " + found + L", not " +
                  shown(values[column]));
}

void ReplayedTable::remove(std::int64_t key, const std::vector<RowValue>& values) {
  const std::int64_t found = require_row(key, values);
  SqliteStatement& statement = ready(remove_, [&] {
    return L"DELETE FROM " + quoted_name_ + L" WHERE " +
           (has_row_numbers() ? layout_.row_number + L" = ?" : each_column(L" IS ", L" AND "));
  });
  if (has_row_numbers()) {
    statement.bind(1, found);
  } else {
    bind_row(statement, 1, values);
  }
  run(statement);
}

void ReplayedTable::insert(std::int64_t key, const std::vector<RowValue>& values) {
  const bool is_taken = has_row_numbers() && has_row(key);
  if (is_taken && layout_.has_key) fail_on_row(key, values, L"is there already");
  const std::wstring into = L"INSERT INTO " + quoted_name_ + L" (";
  // A column that is the number says it.
  if (is_taken || layout_.has_key || !has_row_numbers()) {
    SqliteStatement& statement = ready(insert_anywhere_, [&] {
      return into + layout_.column_list() + L") VALUES (" + parameters(size()) + L")";
    });
    bind_row(statement, 1, values);
    return run(statement);
  }
  SqliteStatement& statement = ready(insert_, [&] {
    return into + layout_.row_number + L", " + layout_.column_list() + L") VALUES (" +
           parameters(size() + 1) + L")";
  });
  statement.bind(1, key);
  bind_row(statement, 2, values);
  run(statement);
}

void ReplayedTable::update(std::int64_t key, const std::vector<RowValue>& values,
                           std::int64_t new_key, const std::vector<RowValue>& new_values) {
  const bool is_renumbered = has_row_numbers() && key != new_key;
  if (!has_row_numbers() || (is_renumbered && !layout_.has_key)) {
    remove(key, values);
    return insert(new_key, new_values);
  }
  if (is_renumbered && has_row(new_key)) fail_on_row(new_key, new_values, L"is there already");
  const std::int64_t found = require_row(key, values);
  SqliteStatement& statement = ready(update_, [&] {
    return L"UPDATE " + quoted_name_ + L" SET " + each_column(L" = ", L", ") + L" WHERE " +
           layout_.row_number + L" = " + parameter(size() + 1);
  });
  statement.bind(bind_row(statement, 1, new_values), found);
  run(statement);
  if (is_renumbered) never_give_again(key);
}

/// SQLite notes keys that are inserted, not those that an update gives.
void ReplayedTable::never_give_again(std::int64_t key) {
  SqliteStatement& statement = ready(
      sequence_, [] { return L"UPDATE sqlite_sequence SET seq = max(seq, ?) WHERE name = ?"; });
  statement.bind(1, key);
  statement.bind(2, std::wstring_view(name_));
  run(statement);
}

void ReplayedTable::fail_on_row(std::int64_t key, const std::vector<RowValue>& values,
                                const std::wstring& words) const {
  std::wstring row;
  if (layout_.has_key) {
    row = L" " + std::to_wstring(key);
  } else {
    for (std::size_t i = 0; i < values.size() && i < layout_.columns.size(); ++i) {
      row += (i == 0 ? L" with " : L", ") + layout_.columns[i] + L" " + shown(values[i]);
    }
  }
  fail(kIntegrityViolation, L"The row" + row + L" of the table " + name_ + L" " + words +
                                L": another program has changed it since.");
}

}  // namespace modeldb
