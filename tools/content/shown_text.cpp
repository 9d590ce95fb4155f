#include "tools/content/shown_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "tools/content/utf8.h"

namespace content {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

template <std::size_t count>
bool is_in(const std::array<Range, count>& ranges, char32_t code) {
  return std::ranges::any_of(
      ranges, [code](const Range& range) { return range.first <= code && code <= range.last; });
}

// Control characters, line and paragraph separators, and marks of the direction of writing.
constexpr std::array<Range, 6> kControls{{{0, 0x1F},
                                          {0x7F, 0x9F},
                                          {0x200E, 0x200F},
                                          {0x2028, 0x202E},
                                          {0x2066, 0x2069},
                                          {0xFEFF, 0xFEFF}}};

// The blocks of Unicode whose characters are wide (East Asian Width W and F), and of those that
// stand over or within the one before them.
constexpr std::array<Range, 13> kWide{{{0x1100, 0x115F},
                                       {0x2E80, 0x303E},
                                       {0x3041, 0xA4CF},
                                       {0xA960, 0xA97F},
                                       {0xAC00, 0xD7A3},
                                       {0xF900, 0xFAFF},
                                       {0xFE30, 0xFE6F},
                                       {0xFF00, 0xFF60},
                                       {0xFFE0, 0xFFE6},
                                       {0x1F300, 0x1F64F},
                                       {0x1F680, 0x1F6FF},
                                       {0x1F900, 0x1F9FF},
                                       {0x20000, 0x3FFFD}}};
constexpr std::array<Range, 6> kWithoutWidth{{{0x300, 0x36F},
                                              {0x1AB0, 0x1AFF},
                                              {0x1DC0, 0x1DFF},
                                              {0x200B, 0x200D},
                                              {0x20D0, 0x20FF},
                                              {0xFE00, 0xFE0F}}};

std::size_t columns_of(char32_t code) {
  if (code < 0x300) return 1;
  if (is_in(kWithoutWidth, code)) return 0;
  return is_in(kWide, code) ? 2 : 1;
}

void append_escape(char32_t code, std::string& text) {
  if (code == '\n') {
    text += "\\n";
  } else if (code == '\t') {
    text += "\\t";
  } else {
    std::array<char, 12> escape;
    std::snprintf(escape.data(), escape.size(), code < 0x100 ? "\\x%02X" : "\\u%04X",
                  static_cast<unsigned>(code));
    text += escape.data();
  }
}

std::string escaped(std::string_view text, char32_t kept) {
  std::string result;
  while (!text.empty()) {
    const Character character = character_at(text);
    if (character.code != kept && is_in(kControls, character.code)) {
      append_escape(character.code, result);
    } else if (character.code == 0xFFFD) {
      result += "\uFFFD";
    } else {
      result += text.substr(0, character.bytes);
    }
    text.remove_prefix(character.bytes);
  }
  return result;
}

}  // namespace

std::string on_one_line(std::string_view text) { return escaped(text, 0xFFFD); }
std::string without_controls(std::string_view text) { return escaped(text, '\n'); }

std::size_t columns_of(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = character_at(text);
    columns += columns_of(character.code);
    text.remove_prefix(character.bytes);
  }
  return columns;
}

std::string cut_to_columns(const std::string& text, std::size_t columns) {
  std::size_t used = 0;
  std::size_t kept = 0;  // bytes that leave a column for the ellipsis
  for (std::size_t at = 0; at < text.size();) {
    const Character character = character_at(std::string_view(text).substr(at));
    used += columns_of(character.code);
    if (used > columns) return text.substr(0, kept) + "\u2026";
    at += character.bytes;
    if (used < columns) kept = at;
  }
  return text;
}

std::string shown_name(std::string_view name) {
  constexpr std::size_t kLine = 80;
  // Enough bytes for a line, whatever they are.
  return cut_to_columns(on_one_line(name.substr(0, 4 * kLine)), kLine);
}

}  // namespace content
