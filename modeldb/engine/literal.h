#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace modeldb {

/// A value for a parameter of a statement; the last is NULL. Text refers to characters that
/// somebody else owns.
using Literal = std::variant<std::int64_t, double, std::wstring_view, std::nullptr_t>;

/// A statement with parameters (?) and their values, in order. The values refer to the texts from
/// which they were taken; those must live as long as this is used.
struct BoundText {
  std::wstring text;
  std::vector<Literal> values;

  void clear() {
    text.clear();
    values.clear();
  }
};

}  // namespace modeldb
