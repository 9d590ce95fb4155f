#pragma once

#include <string>

#include "modeldb/engine/schema.h"
#include "modeldb/sqlite/sqlite_file.h"

namespace modeldb {

/// What a file has under a name: a table, view or index, and the text that made it.
struct SchemaEntry {
  std::wstring type;
  std::wstring sql;
};

const wchar_t* sql_type(ColumnType type);

/// The statement that makes the table.
std::wstring create_statement(const TableDefinition& table);

/// See Schema::require_shape.
Shape require_shape(SqliteFile& file, const TableDefinition& needed, const SchemaEntry& found);

}  // namespace modeldb
