#pragma once

#include <span>

#include "modeldb/schema/definition.h"

namespace modeldb {

/// The tables in which a model remembers where its records came from. Their rows are no objects:
/// clients read and write them by statements. The model database itself does neither.
std::span<const TableDefinition> origin_tables();

}  // namespace modeldb
