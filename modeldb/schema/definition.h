#pragma once

#include <vector>

#include "modeldb/engine/table_definition.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// Every table, the sets' before those of the links to them.
std::vector<TableDefinition> table_definitions(const Catalogue& catalogue);
std::vector<IndexDefinition> index_definitions(const Catalogue& catalogue);

/// Whether the objects of the kind stand on a vertex.
bool stands_on_vertex(const Kind& kind);

}  // namespace modeldb
