#include "tools/deck/encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "tools/content/utf8.h"

namespace deck {
namespace {

/// The characters 0x80 to 0x9F; all others are those of Unicode. Five are not assigned, and control
/// characters as Windows converts them.
constexpr std::array<char32_t, 32> kCharacters = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t code_of(char byte) {
  const auto value = static_cast<std::uint8_t>(byte);
  return value >= 0x80 && value < 0xA0 ? kCharacters.at(value - 0x80U) : value;
}

char byte_of(char32_t code) {
  const auto* const found = std::ranges::find(kCharacters, code);
  if (found != kCharacters.end()) return static_cast<char>(0x80 + (found - kCharacters.begin()));
  const bool is_same = code < 0x80 || (code >= 0xA0 && code <= 0xFF);
  return is_same ? static_cast<char>(code) : '?';
}

}  // namespace

std::string from_windows_1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char byte : bytes) {
    const char32_t code = code_of(byte);
    if (code < 0x80) {
      text += byte;
      continue;
    }
    if (code < 0x800) {
      text += static_cast<char>(0xC0 | code >> 6);
    } else {
      text += static_cast<char>(0xE0 | code >> 12);
      text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    }
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
  return text;
}

std::string to_windows_1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const content::Character character = content::character_at(utf8);
    bytes += character.code < 0x80 ? utf8.front() : byte_of(character.code);
    utf8.remove_prefix(character.bytes);
  }
  return bytes;
}

}  // namespace deck
