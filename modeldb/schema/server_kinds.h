#pragma once

#include <vector>

#include "modeldb/schema/kind.h"

namespace modeldb {

/// The kinds of record that the registered automation server has. They are found out, not listed:
/// its type library tells the classes, and a record of each tells its table and columns.
/// Raises, with a sentence, when the server is not registered or a class of it cannot be created.
std::vector<Kind> server_kinds();

}  // namespace modeldb
