#pragma once

#include <optional>
#include <string_view>

#include "modeldb/engine/literal.h"

namespace modeldb {

/// The value of a decimal number as SQL writes it, with an optional sign: an integer as a 64-bit
/// integer, anything else as the nearest double. Nothing when it is out of range, or hexadecimal.
std::optional<Literal> parse_number(std::wstring_view text);

/// Takes the number that `text` begins with, up to its end or a comma, when it is in the form in
/// which programs write it: digits, with a minus before and a fraction or an exponent behind.
/// Nothing, and nothing taken, for any other number that SQL knows, and for what is none.
std::optional<Literal> take_plain_number(std::wstring_view& text);

}  // namespace modeldb
