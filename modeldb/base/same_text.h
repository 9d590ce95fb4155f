#pragma once

#include <cstring>
#include <string_view>

namespace modeldb {

/// Whether both are the same, compared as bytes: the toolchain goes character by character.
inline bool is_same_text(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(wchar_t)) == 0;
}

}  // namespace modeldb
