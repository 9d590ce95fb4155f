#pragma once

#include "modeldb/engine/database.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// Makes the tables that the model lacks, all or none: every table in a new file, and in an older
/// file those of kinds that the server has learnt since.
/// Raises, with a sentence, when the file was made by a newer version of the model database.
void make_tables(Database& database, const Catalogue& catalogue);

}  // namespace modeldb
