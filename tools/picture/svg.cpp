#include "tools/picture/svg.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace svg {
namespace {

std::string written(double value, std::chars_format format, int precision) {
  std::array<char, 400> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision).ptr;
  return {buffer.data(), end};
}

// "12.500" becomes "12.5", and "-0.0" becomes "0".
std::string without_zeros(std::string text) {
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

// The length of the UTF-8 character at the beginning of the text, or 0 if there is none.
std::size_t character_at(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) return first >= 0x20 || first == '\n' || first == '\t' ? 1 : 0;
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) return 0;
  std::uint32_t code = first & (0x7F >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    code = code << 6 | (byte(i) & 0x3F);
  }
  constexpr std::array<std::uint32_t, 5> lowest = {0, 0, 0x80, 0x800, 0x10000};
  const bool is_surrogate = code >= 0xD800 && code < 0xE000;
  const bool is_no_character = code == 0xFFFE || code == 0xFFFF || code > 0x10FFFF;
  return code < lowest.at(size) || is_surrogate || is_no_character ? 0 : size;
}

}  // namespace

std::string number(double value, int digits) {
  return without_zeros(written(value, std::chars_format::fixed, digits));
}

std::string readable(double value) {
  if (!std::isfinite(value)) return "not a number";
  const double size = std::abs(value);
  if (value == 0) return "0";
  if (size < 1e-3 || size >= 1e6) {
    std::string text = written(value, std::chars_format::scientific, 3);
    const std::size_t exponent = text.find('e');
    return without_zeros(text.substr(0, exponent)) + text.substr(exponent);
  }
  int digits = 3;
  for (double limit = 10; limit <= size && digits > 0; limit *= 10) --digits;
  for (double limit = 1; limit > size; limit /= 10) ++digits;
  return number(value, digits);
}

std::string exact(double value) {
  std::array<char, 40> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  return {buffer.data(), end};
}

std::string count(std::size_t value) {
  std::string text = std::to_string(value);
  for (std::size_t i = text.size(); i > 3;) text.insert(i -= 3, 1, ',');
  return text;
}

std::string escaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t size = character_at(text);
    const char first = text.front();
    if (size == 0) {
      result += "\xEF\xBF\xBD";
    } else if (first == '&') {
      result += "&amp;";
    } else if (first == '<') {
      result += "&lt;";
    } else if (first == '>') {
      result += "&gt;";
    } else if (first == '"') {
      result += "&quot;";
    } else {
      result += text.substr(0, size);
    }
    text.remove_prefix(size == 0 ? 1 : size);
  }
  return result;
}

}  // namespace svg
