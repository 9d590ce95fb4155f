#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace modeldb {

/// Latin capital letters as small ones; SQL folds no others.
constexpr wchar_t folded(wchar_t letter) {
  return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter + (L'a' - L'A')) : letter;
}

/// Whether two names or keywords of SQL are the same.
constexpr bool same_name(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && folded(a[i]) != folded(b[i])) return false;
  }
  return true;
}

/// Orders names so that those that are the same are equal.
struct NameOrder {
  using is_transparent = void;
  bool operator()(std::wstring_view a, std::wstring_view b) const {
    return std::ranges::lexicographical_compare(a, b, {}, folded, folded);
  }
};

constexpr bool has_prefix(std::wstring_view name, std::wstring_view prefix) {
  return same_name(name.substr(0, prefix.size()), prefix);
}

}  // namespace modeldb
