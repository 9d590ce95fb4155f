#pragma once

#include "modeldb/engine/database.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// From here until the database is closed the links of a record go with it, whoever deletes it, and
/// follow it to another key, so that no later record of its key inherits its sets.
void keep_links_with_records(Database& database, const Catalogue& catalogue);

}  // namespace modeldb
