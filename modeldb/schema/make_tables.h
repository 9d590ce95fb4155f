#pragma once

#include "modeldb/engine/database.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// The version of the schema that make_tables makes. Since 2 a link goes with its set.
inline constexpr int kSchemaVersion = 2;

/// Makes what the model lacks, all or none: every table in a new file, and in an older file those
/// of kinds that the server has learnt since, and the rules that it was made without. Writes
/// nothing where nothing is lacking; a file that cannot be written goes without what it lacks,
/// unless it lacks everything. Raises kCannotOpenFile, with a sentence, when another program gave a
/// table a shape in which rows could get lost.
void make_tables(Database& database, const Catalogue& catalogue);

}  // namespace modeldb
