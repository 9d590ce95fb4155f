#pragma once

#include <string>
#include <string_view>

#include "modeldb/schema/kind.h"

namespace modeldb {

/// The column that is meant by a name that none has: that of a property (ID, IsRotate), or one
/// mistyped. Empty when none is near.
std::wstring nearest_column(const Kind& kind, std::wstring_view name);

}  // namespace modeldb
