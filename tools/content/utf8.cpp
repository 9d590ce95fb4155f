#include "tools/content/utf8.h"

#include <array>
#include <cstdint>

namespace content {

Character character_at(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) return {first, 1};
  const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < bytes) return {};
  char32_t code = first & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(i) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kLowest = {0, 0, 0x80, 0x800, 0x10000};
  const bool is_surrogate = code >= 0xD800 && code < 0xE000;
  if (code < kLowest.at(bytes) || is_surrogate || code > 0x10FFFF) return {};
  return {code, bytes};
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    const Character character = character_at(text);
    if (character.is_none()) return false;
    text.remove_prefix(character.bytes);
  }
  return true;
}

}  // namespace content
