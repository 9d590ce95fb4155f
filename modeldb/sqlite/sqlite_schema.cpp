#include "modeldb/sqlite/sqlite_schema.h"

#include "modeldb/sqlite/sqlite_statement.h"
#include "modeldb/sqlite/upgrade.h"

namespace modeldb {

SqliteSchema::SqliteSchema(SqliteFile& file) : file_(file), version_(file.schema_version()) {
  SqliteStatement rows(file, L"SELECT name, type, sql FROM sqlite_schema", Trust::kHost);
  while (rows.step()) {
    entries_.emplace(rows.text(0),
                     SchemaEntry{std::wstring(rows.text(1)), std::wstring(rows.text(2))});
  }
}

bool SqliteSchema::has(std::wstring_view name) const { return entries_.contains(name); }

const SchemaEntry& SqliteSchema::entry(const TableDefinition& table) const {
  return entries_.at(table.name);
}

Shape SqliteSchema::require_shape(const TableDefinition& needed) const {
  return modeldb::require_shape(file_, needed, entry(needed));
}

void SqliteSchema::make(const TableDefinition& table) {
  SqliteStatement(file_, create_statement(table), Trust::kHost).run();
}

void SqliteSchema::make(const IndexDefinition& index) {
  SqliteStatement(
      file_, L"CREATE INDEX " + index.name + L" ON " + index.table + L" (" + index.columns + L")",
      Trust::kHost)
      .run();
}

void SqliteSchema::add_link_rule(const TableDefinition& links) {
  modeldb::add_link_rule(file_, links, entry(links));
}

void SqliteSchema::set_version(int version) { file_.set_schema_version(version); }

}  // namespace modeldb
