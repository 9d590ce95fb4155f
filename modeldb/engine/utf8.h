#pragma once

#include <string>
#include <string_view>

namespace modeldb {

// Where SQLite takes or gives UTF-8 only.
std::string to_utf8(std::wstring_view text);
std::wstring from_utf8(std::string_view text);

}  // namespace modeldb
