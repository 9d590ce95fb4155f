#pragma once

#include "modeldb/schema/shape.h"

namespace modeldb {

/// Gives the link rule to a link table of a file whose links nothing held to their sets. Links to
/// sets that are gone go too: a later set of that number would inherit them. Everything else that
/// the table has stays. For use inside a transaction.
void add_link_rule(Database& database, const TableDefinition& links, const SchemaEntry& found);

}  // namespace modeldb
