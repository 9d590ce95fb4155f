#include "modeldb/schema/shape.h"

#include <algorithm>
#include <initializer_list>

#include "modeldb/engine/ascii.h"
#include "modeldb/engine/failure.h"
#include "modeldb/engine/tokeniser.h"

namespace modeldb {
namespace {

struct FoundColumn {
  std::wstring name;
  std::wstring type;
  bool is_not_null;
  bool is_in_key;
  bool is_computed;
};

std::vector<FoundColumn> columns_of(Database& database, const std::wstring& table) {
  std::vector<FoundColumn> columns;
  const auto rows = database.query(L"PRAGMA table_xinfo(" + table + L")");
  while (rows->step()) {
    columns.push_back({.name = std::wstring(rows->text(1)),
                       .type = std::wstring(rows->text(2)),
                       .is_not_null = rows->integer(3) != 0,
                       .is_in_key = rows->integer(5) != 0,
                       .is_computed = rows->integer(6) != 0});
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
LinkRules link_rules_of(Database& database, const TableDefinition& needed) {
  LinkRules rules;
  const auto rows = database.query(L"PRAGMA foreign_key_list(" + needed.name + L")");
  while (rows->step()) {
    const bool right = needed.is_link_table() && same_name(rows->text(2), needed.sets) &&
                       same_name(rows->text(3), needed.sets_key()) && rows->text(5) == L"CASCADE" &&
                       rows->text(6) == L"CASCADE";
    ++(right ? rules.right : rules.other);
  }
  return rules;
}

std::wstring fault_of(Database& database, const TableDefinition& needed, const SchemaEntry& found) {
  if (found.type != L"table" || has_words(found.sql, {L"CREATE", L"VIRTUAL"})) {
    return L"it is no table";
  }
  if (has_words(found.sql, {L"ON", L"CONFLICT"})) {
    return L"it has a rule that passes over rows without a word (ON CONFLICT)";
  }
  const FoundColumns columns = columns_of(database, needed.name);
  std::wstring fault = fault_of_key(needed, columns, found.sql);
  for (const Column& column : needed.columns) {
    if (fault.empty()) fault = fault_of_column(column, columns);
  }
  return fault.empty() ? fault_of_others(needed, columns) : fault;
}

[[noreturn]] void fail_on_shape(const Database& database, const TableDefinition& table,
                                const std::wstring& fault) {
  fail(kCannotOpenFile, L"The table " + table.name + L" of the model " + quoted(database.path()) +
                            L" was given another shape by another program: " + fault +
                            L". Give it back the shape that it has in a new model, or take a copy "
                            L"of the file that was saved earlier.");
}

}  // namespace

bool NameOrder::operator()(const std::wstring& a, const std::wstring& b) const {
  return std::ranges::lexicographical_compare(a, b, {}, folded, folded);
}

SchemaEntries read_schema(Database& database) {
  SchemaEntries entries;
  const auto rows = database.query(L"SELECT name, type, sql FROM sqlite_schema");
  while (rows->step()) {
    entries.emplace(rows->text(0),
                    SchemaEntry{std::wstring(rows->text(1)), std::wstring(rows->text(2))});
  }
  return entries;
}

Shape require_shape(Database& database, const TableDefinition& needed, const SchemaEntry& found) {
  if (found.sql == needed.sql()) return Shape::kRight;
  std::wstring fault = fault_of(database, needed, found);
  const LinkRules rules = link_rules_of(database, needed);
  if (fault.empty() && (rules.other > 0 || rules.right > 1)) {
    fault = L"it has a rule of another program on the rows that it refers to (REFERENCES)";
  }
  if (!fault.empty()) fail_on_shape(database, needed, fault);
  return needed.is_link_table() && rules.right == 0 ? Shape::kWithoutLinkRule : Shape::kRight;
}

void fail_without_link_rule(const Database& database, const TableDefinition& links) {
  fail_on_shape(database, links, L"it lacks the rule " + links.link_rule());
}

}  // namespace modeldb
