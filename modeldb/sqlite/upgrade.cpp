#include "modeldb/sqlite/upgrade.h"

#include <string>
#include <vector>

#include "modeldb/sqlite/sqlite_statement.h"

namespace modeldb {
namespace {

/// The columns that can be written, between quotation marks.
std::wstring column_list(SqliteFile& file, const std::wstring& table) {
  std::wstring list;
  SqliteStatement rows(file, L"PRAGMA table_info(" + table + L")", Trust::kHost);
  while (rows.step()) {
    list += list.empty() ? L"\"" : L", \"";
    for (const wchar_t letter : rows.text(1)) list.append(letter == L'"' ? 2 : 1, letter);
    list += L'"';
  }
  return list;
}

/// The statements that made what goes with a table, such as its indexes.
std::vector<std::wstring> belongings(SqliteFile& file, const std::wstring& table) {
  std::vector<std::wstring> statements;
  SqliteStatement rows(
      file,
      L"SELECT sql FROM sqlite_schema WHERE tbl_name = ? COLLATE NOCASE AND type <> 'table' AND "
      L"sql IS NOT NULL",
      Trust::kHost);
  rows.bind(1, table);
  while (rows.step()) statements.emplace_back(rows.text(0));
  return statements;
}

}  // namespace

// SQLite gives rules to new tables only: the rows wait in a temporary one.
void add_link_rule(SqliteFile& file, const TableDefinition& links, const SchemaEntry& found) {
  const auto execute = [&](const std::wstring& text) {
    SqliteStatement(file, text, Trust::kHost).run();
  };
  const std::wstring columns = column_list(file, links.name);
  const auto indexes = belongings(file, links.name);
  const auto begin = found.sql.find(L'(');
  const auto end = found.sql.rfind(L')');
  const std::wstring sql = L"CREATE TABLE " + links.name + L" " +
                           found.sql.substr(begin, end - begin) + L", " + links.link_rule() +
                           found.sql.substr(end);

  execute(L"CREATE TEMP TABLE orv_links AS SELECT " + columns + L" FROM " + links.name +
          L" WHERE " + links.sets_key() + L" IN (SELECT " + links.sets_key() + L" FROM " +
          links.sets + L") ORDER BY rowid");
  execute(L"DROP TABLE main." + links.name);
  execute(sql);
  execute(L"INSERT INTO " + links.name + L" (" + columns + L") SELECT " + columns +
          L" FROM temp.orv_links ORDER BY rowid");
  execute(L"DROP TABLE temp.orv_links");
  for (const std::wstring& index : indexes) execute(index);
}

}  // namespace modeldb
