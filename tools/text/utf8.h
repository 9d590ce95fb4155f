#pragma once

#include <string>
#include <string_view>

namespace text {

// What is no character becomes U+FFFD in either direction.

std::string to_utf8(std::wstring_view text);
std::wstring to_wide(std::string_view text);

}  // namespace text
