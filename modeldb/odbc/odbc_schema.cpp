#include "modeldb/odbc/odbc_schema.h"

#include <algorithm>
#include <cstdint>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/odbc/key_rules.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/posted_changes.h"

namespace modeldb {
namespace {

const wchar_t* sql_type(ColumnType type) {
  switch (type) {
    case ColumnType::kInteger:
      return L"integer";
    case ColumnType::kReal:
      return L"double precision";
    case ColumnType::kText:
      return L"text";
  }
  return L"";
}

/// Texts are compared letter by letter, and in LIKE the case of Latin letters alone does not count.
std::wstring column_definition(const Column& column) {
  return column.name + L" " + sql_type(column.type) +
         (column.type == ColumnType::kText ? L" COLLATE \"C\"" : L"");
}

/// The name in small letters, as the server has it; of one that is too long for it, a part that no
/// other name shares.
std::wstring server_name(std::wstring_view name) {
  constexpr std::size_t kLongest = 63;
  constexpr std::size_t kKept = 52;
  std::wstring result = folded_name(name);
  if (result.size() <= kLongest) return result;
  std::uint32_t hash = 2166136261;  // FNV-1a
  for (const wchar_t letter : result) hash = (hash ^ letter) * 16777619;
  return result.substr(0, kKept) + L"_" + std::to_wstring(hash);
}

}  // namespace

OdbcSchema::OdbcSchema(Session& session) : session_(session) {
  if (session.is_in_transaction()) session.run(kMakingLock);
  read_tables();
  read_version();
}

void OdbcSchema::read_tables() {
  OdbcStatement rows(
      session_,
      L"SELECT c.relname, c.relkind::text, a.attname, format_type(a.atttypid, NULL), a.attnotnull, "
      L"EXISTS (SELECT 1 FROM pg_index i WHERE i.indrelid = c.oid AND i.indisprimary AND a.attnum "
      L"= "
      L"ANY (i.indkey)), EXISTS (SELECT 1 FROM pg_trigger t WHERE t.tgrelid = c.oid AND t.tgname = "
      L"'orv_give_key'), (SELECT count(*) FROM pg_constraint k WHERE k.conrelid = c.oid AND "
      L"k.contype "
      L"= 'f' AND k.confdeltype = 'c' AND k.confupdtype = 'c') FROM pg_class c LEFT JOIN "
      L"pg_attribute "
      L"a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped AND a.attgenerated = '' "
      L"WHERE c.relnamespace = current_schema()::regnamespace AND c.relkind IN ('r', 'p', 'v', "
      L"'m', "
      L"'f', 'i') AND c.relname NOT LIKE 'orv\\_%' ORDER BY c.relname, a.attnum",
      Trust::kHost);
  while (rows.step()) {
    FoundTable& table = tables_[std::wstring(rows.text(0))];
    table.kind = rows.text(1).empty() ? L'r' : rows.text(1).front();
    table.gives_keys = rows.integer(6) != 0;
    table.link_rules = static_cast<int>(rows.integer(7));
    table.columns.push_back({.name = std::wstring(rows.text(2)),
                             .type = std::wstring(rows.text(3)),
                             .is_not_null = rows.integer(4) != 0,
                             .is_in_key = rows.integer(5) != 0});
  }
}

void OdbcSchema::read_version() {
  OdbcStatement table(session_,
                      L"SELECT 1 FROM pg_class WHERE relnamespace = current_schema()::regnamespace "
                      L"AND relname = 'orv_model'",
                      Trust::kHost);
  if (!table.step()) return;
  OdbcStatement row(session_, L"SELECT SchemaVersion FROM orv_model", Trust::kHost);
  try {
    if (row.step()) version_ = static_cast<int>(row.integer(0));
  } catch (const com::Error& error) {
    if (error.result() != kPermissionDenied) throw;
    fail(kCannotOpenFile, L"The model " + quoted(session_.location()) +
                              L" cannot be opened: the user of the connection has no right to read "
                              L"it. Ask its owner for that.");
  }
}

bool OdbcSchema::has(std::wstring_view name) const { return tables_.contains(server_name(name)); }

std::wstring OdbcSchema::fault_of(const TableDefinition& needed, const FoundTable& found) {
  if (found.kind != L'r') return L"it is no table";
  const auto find = [&](std::wstring_view name) {
    return std::ranges::find_if(
        found.columns, [&](const FoundColumn& column) { return same_name(column.name, name); });
  };
  const auto keys = std::ranges::count_if(found.columns, &FoundColumn::is_in_key);
  if (needed.key.empty()) {
    if (keys != 0) return L"it has a primary key, where links have none";
  } else {
    const auto key = find(needed.key);
    const bool is_right = key != found.columns.end() && key->is_in_key && keys == 1 &&
                          key->type == L"integer" && found.gives_keys;
    if (!is_right) return L"its key " + needed.key + L" is no integer PRIMARY KEY with its trigger";
  }
  for (const Column& column : needed.columns) {
    const auto there = find(column.name);
    if (there == found.columns.end()) return L"it has no column " + column.name;
    if (there->type != sql_type(column.type)) {
      return L"its column " + column.name + L" is of the type " + quoted(there->type) + L", not " +
             sql_type(column.type);
    }
  }
  for (const FoundColumn& column : found.columns) {
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

Shape OdbcSchema::require_shape(const TableDefinition& needed) const {
  session_.learn(needed);
  const FoundTable& found = tables_.at(server_name(needed.name));
  const std::wstring fault = fault_of(needed, found);
  if (!fault.empty()) fail_on_shape(session_.location(), needed, fault);
  return needed.is_link_table() && found.link_rules == 0 ? Shape::kWithoutLinkRule : Shape::kRight;
}

void OdbcSchema::change(std::wstring_view sql) {
  try {
    session_.run(sql);
  } catch (const com::Error& error) {
    if (error.result() != kPermissionDenied) throw;
    fail(kPermissionDenied,
         L"The model " + quoted(session_.location()) +
             L" lacks a table or rule that this version needs, and the user of the connection may "
             L"not make it. Have the owner of the model open it first, and grant the rights to the "
             L"tables once more.");
  }
}

void OdbcSchema::make(const TableDefinition& table) {
  session_.learn(table);
  std::wstring list;
  if (!table.key.empty()) list = table.key + L" integer PRIMARY KEY";
  for (const Column& column : table.columns) {
    list += (list.empty() ? L"" : L", ") + column_definition(column);
  }
  if (table.is_link_table()) list += L", " + table.link_rule();
  change(L"CREATE TABLE " + table.name + L" (" + list + L")");
  if (!table.key.empty()) give_keys(session_, table);
}

void OdbcSchema::make(const IndexDefinition& index) {
  change(L"CREATE INDEX " + server_name(index.name) + L" ON " + index.table + L" (" +
         index.columns + L")");
}

void OdbcSchema::add_link_rule(const TableDefinition& links) {
  change(L"DELETE FROM " + links.name + L" WHERE " + links.sets_key() + L" NOT IN (SELECT " +
         links.sets_key() + L" FROM " + links.sets + L")");
  change(L"ALTER TABLE " + links.name + L" ADD " + links.link_rule());
}

void OdbcSchema::set_version(int version) {
  change(L"CREATE TABLE IF NOT EXISTS orv_model (SchemaVersion integer NOT NULL)");
  PostedChanges::make_table(session_);
  change(L"DELETE FROM orv_model");
  change(L"INSERT INTO orv_model VALUES (" + std::to_wstring(version) + L")");
}

}  // namespace modeldb
