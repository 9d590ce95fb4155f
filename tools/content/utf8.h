#pragma once

#include <cstddef>
#include <string_view>

namespace content {

/// A character and the bytes that it takes in UTF-8.
struct Character {
  char32_t code = 0xFFFD;
  std::size_t bytes = 1;

  /// Whether it stands for a byte that begins no character.
  [[nodiscard]] bool is_none() const { return code == 0xFFFD && bytes == 1; }
};

/// The character at the beginning of a text that is not empty.
Character character_at(std::string_view text);

bool is_utf8(std::string_view text);

}  // namespace content
