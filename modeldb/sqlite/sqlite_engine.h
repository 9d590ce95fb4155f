#pragma once

#include <limits>
#include <memory>
#include <string_view>

#include "modeldb/engine/database.h"

namespace modeldb {

/// Opens the model database file at `path`, or makes an empty one where there is no file or an
/// empty one. The schema of a new one is the caller's to make (its version is 0). kCannotOpenFile:
/// no path, not accessible, not an SQLite database, not a model database, or one whose schema is
/// newer than `newest_version`; the file is left as it was.
std::shared_ptr<Database> open_file(std::wstring_view path,
                                    int newest_version = std::numeric_limits<int>::max());

}  // namespace modeldb
