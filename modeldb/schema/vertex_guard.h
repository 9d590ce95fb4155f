#pragma once

#include <string>

#include "modeldb/engine/database.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// From here until the database is closed it refuses, whoever asks, to delete or renumber a vertex
/// that records stand on (kIntegrityViolation). A record may be
/// written on a vertex that the model does not have: its vertex need not be saved with it.
void guard_vertices(Database& database, const Catalogue& catalogue);

/// The records that stand on a vertex: "NodalForce 7, 3 NodalMoments (1, 2, 5)"; empty for none.
std::wstring records_on_vertex(Database& database, const Catalogue& catalogue, long id);

}  // namespace modeldb
