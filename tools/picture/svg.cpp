#include "tools/picture/svg.h"

#include <array>
#include <charconv>
#include <cmath>

#include "tools/content/utf8.h"

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

// XML has no place for most control characters, nor for what is no character.
bool may_stand_in_xml(const content::Character& character) {
  const char32_t code = character.code;
  if (code < 0x20) return code == '\n' || code == '\t';
  return !character.is_none() && code != 0xFFFE && code != 0xFFFF;
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
    const content::Character character = content::character_at(text);
    const char first = text.front();
    if (!may_stand_in_xml(character)) {
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
      result += text.substr(0, character.bytes);
    }
    text.remove_prefix(character.bytes);
  }
  return result;
}

}  // namespace svg
