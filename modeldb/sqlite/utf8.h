#pragma once

#include <string>
#include <string_view>

namespace modeldb {

// SQLite is given UTF-8: of UTF-16 it would take U+FEFF and U+FFFE at the beginning for a mark of
// the order of bytes, and change what is no character without a word.

/// The text as UTF-8. kInvalidArgument: it has half of a surrogate pair, or U+FFFE or U+FFFF, which
/// SQLite cannot give back.
std::string to_utf8(std::wstring_view text);
/// The same into a buffer that is kept for its size; returns the text in it.
std::string_view to_utf8(std::wstring_view text, std::string& buffer);

std::wstring from_utf8(std::string_view text);

}  // namespace modeldb
