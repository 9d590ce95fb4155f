#pragma once

#include <string>

#include "tools/model/database.h"

namespace orv {

/// "9 NodalBoundaryConditions, 9 NodalForces": the records that a model holds; empty without any.
std::string counts_of_records(model::Database& database);
/// How many rows a table has.
long count_of(model::Database& database, const std::string& table);
/// "1 node", "2 nodes"
std::string counted(long count, const std::string& what);

/// Tells that a file was written, and what it holds.
void tell_written(const std::string& path, const std::string& content = {});

}  // namespace orv
