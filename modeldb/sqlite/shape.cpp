#include "modeldb/sqlite/shape.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/tokeniser.h"
#include "modeldb/sqlite/sqlite_statement.h"

namespace modeldb {
namespace {

struct FoundColumn {
  std::wstring name;
  std::wstring type;
  bool is_not_null;
  bool is_in_key;
  bool is_computed;
};

std::vector<FoundColumn> columns_of(SqliteFile& file, const std::wstring& table) {
  std::vector<FoundColumn> columns;
  SqliteStatement rows(file, L"PRAGMA table_xinfo(" + table + L")", Trust::kHost);
  while (rows.step()) {
    columns.push_back({.name = std::wstring(rows.text(1)),
                       .type = std::wstring(rows.text(2)),
                       .is_not_null = rows.integer(3) != 0,
                       .is_in_key = rows.integer(5) != 0,
                       .is_computed = rows.integer(6) != 0});
  }
  return columns;
}

bool contains(std::wstring_view text, std::wstring_view part) {
  return std::ranges::search(text, part, {}, folded, folded).begin() != text.end();
}

/// What values of a declared type become, by the rules of sqlite.org/datatype3.html.
std::wstring_view affinity_of(std::wstring_view type) {
  if (contains(type, L"INT")) return L"INTEGER";
  for (const auto* const text : {L"CHAR", L"CLOB", L"TEXT"}) {
    if (contains(type, text)) return L"TEXT";
  }
  if (type.empty() || contains(type, L"BLOB")) return L"BLOB";
  for (const auto* const real : {L"REAL", L"FLOA", L"DOUB"}) {
    if (contains(type, real)) return L"REAL";
  }
  return L"NUMERIC";
}

/// Whether these words stand one behind the other in a statement.
bool has_words(std::wstring_view sql, std::initializer_list<std::wstring_view> words) {
  Tokeniser tokens(sql);
  auto expected = words.begin();
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd; token = tokens.next()) {
    if (token.kind == TokenKind::kInvalid) return true;
    if (token.kind != TokenKind::kName || !same_name(token.text, *expected)) {
      expected = words.begin();
    }
    if (token.kind == TokenKind::kName && same_name(token.text, *expected) &&
        ++expected == words.end()) {
      return true;
    }
  }
  return false;
}

using FoundColumns = std::vector<FoundColumn>;

const FoundColumn* find(const FoundColumns& columns, const std::wstring& name) {
  const auto found = std::ranges::find_if(
      columns, [&](const FoundColumn& column) { return same_name(column.name, name); });
  return found == columns.end() ? nullptr : &*found;
}

/// What is wrong with the key: only this one makes SQLite number the rows.
std::wstring fault_of_key(const TableDefinition& needed, const FoundColumns& columns,
                          const std::wstring& sql) {
  const auto keys = std::ranges::count_if(columns, &FoundColumn::is_in_key);
  if (needed.key.empty()) {
    return keys == 0 ? L"" : L"it has a primary key, where links have none";
  }
  const FoundColumn* const key = find(columns, needed.key);
  const bool right = key && key->is_in_key && keys == 1 && same_name(key->type, L"INTEGER") &&
                     has_words(sql, {L"AUTOINCREMENT"});
  return right ? L"" : L"its key " + needed.key + L" is no INTEGER PRIMARY KEY AUTOINCREMENT";
}

std::wstring fault_of_column(const Column& needed, const FoundColumns& columns) {
  const FoundColumn* const column = find(columns, needed.name);
  if (!column || column->is_computed) return L"it has no column " + needed.name;
  const std::wstring type = sql_type(needed.type);
  if (affinity_of(column->type) == type) return {};
  return L"its column " + needed.name + L" is of the type " + quoted(column->type) + L", not " +
         type;
}

std::wstring fault_of_others(const TableDefinition& needed, const FoundColumns& columns) {
  for (const FoundColumn& column : columns) {
    const bool is_needed = same_name(column.name, needed.key) ||
                           std::ranges::any_of(needed.columns, [&](const Column& candidate) {
                             return same_name(candidate.name, column.name);
                           });
    if (!is_needed && column.is_not_null) {
      return L"its further column " + column.name + L" does not allow NULL";
    }
  }
  return {};
}

struct LinkRules {
  int right = 0;
  int other = 0;
};

/// The rules that tie the table's rows to those of others.
LinkRules link_rules_of(SqliteFile& file, const TableDefinition& needed) {
  LinkRules rules;
  SqliteStatement rows(file, L"PRAGMA foreign_key_list(" + needed.name + L")", Trust::kHost);
  while (rows.step()) {
    const bool right = needed.is_link_table() && same_name(rows.text(2), needed.sets) &&
                       same_name(rows.text(3), needed.sets_key()) && rows.text(5) == L"CASCADE" &&
                       rows.text(6) == L"CASCADE";
    ++(right ? rules.right : rules.other);
  }
  return rules;
}

std::wstring fault_of(SqliteFile& file, const TableDefinition& needed, const SchemaEntry& found) {
  if (found.type != L"table" || has_words(found.sql, {L"CREATE", L"VIRTUAL"})) {
    return L"it is no table";
  }
  if (has_words(found.sql, {L"ON", L"CONFLICT"})) {
    return L"it has a rule that passes over rows without a word (ON CONFLICT)";
  }
  const FoundColumns columns = columns_of(file, needed.name);
  std::wstring fault = fault_of_key(needed, columns, found.sql);
  for (const Column& column : needed.columns) {
    if (fault.empty()) fault = fault_of_column(column, columns);
  }
  return fault.empty() ? fault_of_others(needed, columns) : fault;
}

}  // namespace

const wchar_t* sql_type(ColumnType type) {
  switch (type) {
    case ColumnType::kInteger:
      return L"INTEGER";
    case ColumnType::kReal:
      return L"REAL";
    case ColumnType::kText:
      return L"TEXT";
  }
  return L"";
}

std::wstring create_statement(const TableDefinition& table) {
  std::wstring list;
  // AUTOINCREMENT: a key that was deleted is never given to another row, since scripts and events
  // go on holding it.
  if (!table.key.empty()) list = table.key + L" INTEGER PRIMARY KEY AUTOINCREMENT";
  for (const Column& column : table.columns) {
    list += (list.empty() ? L"" : L", ") + column.name + L" " + sql_type(column.type);
  }
  if (table.is_link_table()) list += L", " + table.link_rule();
  return L"CREATE TABLE " + table.name + L" (" + list + L")";
}

Shape require_shape(SqliteFile& file, const TableDefinition& needed, const SchemaEntry& found) {
  if (found.sql == create_statement(needed)) return Shape::kRight;
  std::wstring fault = fault_of(file, needed, found);
  const LinkRules rules = link_rules_of(file, needed);
  if (fault.empty() && (rules.other > 0 || rules.right > 1)) {
    fault = L"it has a rule of another program on the rows that it refers to (REFERENCES)";
  }
  if (!fault.empty()) fail_on_shape(file.path(), needed, fault);
  return needed.is_link_table() && rules.right == 0 ? Shape::kWithoutLinkRule : Shape::kRight;
}

}  // namespace modeldb
