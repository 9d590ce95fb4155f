#pragma once

#include "modeldb/engine/database.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// The version of the schema that make_tables makes.
inline constexpr int kSchemaVersion = 1;

/// Makes the tables that the model lacks, all or none: every table in a new file, and in an older
/// file those of kinds that the server has learnt since.
void make_tables(Database& database, const Catalogue& catalogue);

}  // namespace modeldb
