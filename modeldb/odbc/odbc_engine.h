#pragma once

#include <memory>
#include <string_view>

#include "modeldb/engine/database.h"

namespace modeldb {

/// Opens the model that lies on a PostgreSQL server, in the first schema of the user's search path.
/// `location` is "odbc:" and a connection string. The tables of a new one are the caller's to make.
/// kCannotOpenFile: it is no connection string, the server cannot be reached or does not let us in,
/// or the model's schema is newer than `newest_version`.
std::shared_ptr<Database> open_odbc(std::wstring_view location, int newest_version);

}  // namespace modeldb
