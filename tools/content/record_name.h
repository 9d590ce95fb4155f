#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/content/content.h"

namespace content {

/// What one row of a table is: "NodalForce" of "NodalForces", "LoadSet" of "LoadSets".
std::string singular(std::string_view table);

/// "NodalForce 12 'Tip load'"; one that was never saved is named by its vertex.
std::string name_of(const Table& table, std::size_t record);

}  // namespace content
