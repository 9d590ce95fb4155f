#pragma once

#include <optional>
#include <string_view>

#include "modeldb/engine/literal.h"

namespace modeldb {

/// The value of a decimal number as SQL writes it, with an optional sign: an integer as a 64-bit
/// integer, anything else as the nearest double. Nothing when it is out of range, or hexadecimal.
std::optional<Literal> parse_number(std::wstring_view text);

}  // namespace modeldb
