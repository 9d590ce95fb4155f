#pragma once

#include <string_view>

namespace modeldb {

/// Whether the text consists of characters: it has no half of a surrogate pair, U+FFFE or U+FFFF,
/// which no engine gives back as they are.
[[nodiscard]] bool is_of_characters(std::wstring_view text);
/// Raises kInvalidArgument, with a sentence, of a text that is not.
[[noreturn]] void fail_on_characters(std::wstring_view text);

}  // namespace modeldb
