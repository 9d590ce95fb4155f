#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "modeldb/engine/literal.h"

namespace modeldb {

/// The value of a decimal number as SQL writes it, with an optional sign: an integer as a 64-bit
/// integer, anything else as the nearest double. Nothing when it is out of range, or hexadecimal.
std::optional<Literal> parse_number(std::wstring_view text);

/// A number as it is bound and stored: whole ones as integers, which take fewer bytes.
Literal literal_of(double number);

/// Takes the number that `text` begins with, up to its end or a comma, and appends it to `values`,
/// when it begins with a digit, or with a minus and one. False, and nothing taken, for any other
/// number that SQL knows, and for what is none.
bool take_plain_number(std::wstring_view& text, std::vector<Literal>& values);

}  // namespace modeldb
