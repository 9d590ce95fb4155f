#include "modeldb/schema/tables.h"

#include "modeldb/engine/savepoint.h"

namespace modeldb {
namespace {

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

std::wstring table_of(const Kind& kind) {
  // AUTOINCREMENT: a key that was deleted is never given to another row, since scripts and events
  // go on holding it.
  std::wstring sql = L"CREATE TABLE IF NOT EXISTS " + kind.table + L" (" + kind.key +
                     L" INTEGER PRIMARY KEY AUTOINCREMENT";
  for (const Column& column : kind.columns) {
    sql += L", " + column.name + L" " + sql_type(column.type);
  }
  return sql + L")";
}

// Records write their links unchecked, also twice and with ID 0, so that a link table has no key.
std::wstring link_table_of(const Kind& kind, const Kind& sets) {
  return L"CREATE TABLE IF NOT EXISTS " + kind.link_table() + L" (" + sets.key + L" INTEGER, " +
         kind.key + L" INTEGER)";
}

// Both columns: reading the sets of a record then needs the index alone.
std::wstring link_index_of(const Kind& kind, const Kind& sets) {
  return L"CREATE INDEX IF NOT EXISTS " + kind.link_table() + L"By" + kind.object + L" ON " +
         kind.link_table() + L" (" + kind.key + L", " + sets.key + L")";
}

}  // namespace

void make_tables(Database& database, const Catalogue& catalogue) {
  Savepoint whole(database);
  for (const Table& table : catalogue.tables()) {
    const Kind& kind = table.kind();
    database.execute(table_of(kind));
    if (const Table* const sets = catalogue.find(kind.sets)) {
      database.execute(link_table_of(kind, sets->kind()));
      database.execute(link_index_of(kind, sets->kind()));
    }
  }
  if (database.schema_version() != kSchemaVersion) database.set_schema_version(kSchemaVersion);
  whole.release();
}

}  // namespace modeldb
