#pragma once

#include "modeldb/sqlite/shape.h"

namespace modeldb {

/// See Schema::add_link_rule.
void add_link_rule(SqliteFile& file, const TableDefinition& links, const SchemaEntry& found);

}  // namespace modeldb
