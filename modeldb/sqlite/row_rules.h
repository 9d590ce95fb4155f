#pragma once

#include "modeldb/engine/table_definition.h"
#include "modeldb/sqlite/sqlite_file.h"

namespace modeldb {

// Triggers of the connection, of which nothing is written into the file. Rules of the tables would
// not do: records may be written on a vertex that is not saved, and write their links before their
// row is there. Triggers that a file brings with it do not run.

/// See Engine::guard.
void guard_rows(SqliteFile& file, const RowGuard& rows);

/// See Engine::keep_links.
void keep_links(SqliteFile& file, const LinkedRows& rows);

}  // namespace modeldb
