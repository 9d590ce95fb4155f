#include "tools/deck/fields.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace deck {
namespace {

char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::size_t digits_from(std::string_view text, std::size_t at) {
  std::size_t count = 0;
  while (at + count < text.size() && is_digit(text[at + count])) ++count;
  return count;
}

/// Brings `+1.5D3`, `1.5+3` and the like into the form that C++ reads.
std::optional<std::string> plain_number(std::string_view field) {
  std::size_t at = 0;
  std::string plain;
  if (field[at] == '-' || field[at] == '+') {
    if (field[at] == '-') plain += '-';
    ++at;
  }
  const std::size_t whole = digits_from(field, at);
  plain.append(whole > 0 ? field.substr(at, whole) : "0");
  at += whole;
  std::size_t fraction = 0;
  if (at < field.size() && field[at] == '.') {
    fraction = digits_from(field, ++at);
    if (fraction > 0) plain.append(".").append(field.substr(at, fraction));
    at += fraction;
  }
  if (whole + fraction == 0) return std::nullopt;
  if (at == field.size()) return plain;

  const bool has_letter = field[at] == 'E' || field[at] == 'D' || field[at] == 'Q';
  if (has_letter) ++at;
  plain += 'e';
  if (at < field.size() && (field[at] == '-' || field[at] == '+')) {
    plain += field[at++];
  } else if (!has_letter) {
    return std::nullopt;
  }
  const std::size_t exponent = digits_from(field, at);
  if (exponent == 0 || at + exponent != field.size()) return std::nullopt;
  return plain.append(field.substr(at));
}

/// Reads a field of any length.
Reading read_whole(std::string_view field, double& value) {
  value = 0;
  if (field.empty()) return Reading::kNumber;
  const char* end = field.data() + field.size();
  if (is_digit(field.front()) || field.front() == '-') {
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error == std::errc() && stop == end && std::isfinite(value)) return Reading::kNumber;
  }
  const auto plain = plain_number(field);
  if (!plain) {
    const std::string_view word =
        field.substr(field.front() == '+' || field.front() == '-' ? 1 : 0);
    const bool is_named = word == "INF" || word == "INFINITY" || word.substr(0, 3) == "NAN";
    return is_named ? Reading::kNotFinite : Reading::kNoNumber;
  }
  const char* plain_end = plain->data() + plain->size();
  const auto [stop, error] = std::from_chars(plain->data(), plain_end, value);
  if (stop != plain_end) return Reading::kNoNumber;
  if (error == std::errc::result_out_of_range) {
    // Too small for a number is 0 to the solver; too large is infinite.
    value = 0;
    const std::size_t exponent = plain->find('e');
    const bool is_small = exponent != std::string::npos && (*plain)[exponent + 1] == '-';
    return is_small ? Reading::kNumber : Reading::kNotFinite;
  }
  return Reading::kNumber;
}

/// "-1.2345e-7" in as few characters as can be: digits, and a power of ten without the letter.
std::string dense(std::string_view scientific) {
  std::string digits;
  std::string sign;
  std::size_t at = 0;
  if (scientific[at] == '-') sign = scientific[at++];
  digits += scientific[at++];
  if (scientific[at] == '.') {
    ++at;
    while (is_digit(scientific[at])) digits += scientific[at++];
  }
  ++at;  // the letter e
  if (scientific[at] == '+') ++at;
  int exponent = 0;
  std::from_chars(scientific.data() + at, scientific.data() + scientific.size(), exponent);

  const int places = static_cast<int>(digits.size()) - 1;
  const auto with_power = [&](const std::string& mantissa, int power) {
    std::string text = sign + mantissa;
    if (power == 0) return text;
    if (power > 0) text += '+';
    return text + std::to_string(power);
  };
  // The point may stand anywhere: the place that needs the shortest power wins.
  std::string best = with_power(digits, exponent - places);
  for (int point = 0; point <= places; ++point) {
    std::string mantissa = digits;
    mantissa.insert(static_cast<std::size_t>(point), ".");
    const std::string text = with_power(mantissa, exponent + 1 - point);
    if (text.size() < best.size()) best = text;
  }
  return best;
}

}  // namespace

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }

std::string compact(std::string_view line) {
  std::string result;
  for (const char c : line) {
    if (!is_blank(c)) result += capital(c);
  }
  return result;
}

std::string quoted(std::string_view field) {
  constexpr std::size_t kShown = 40;
  std::string text(field.substr(0, kShown));
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '?';
  }
  return "'" + text + (field.size() > kShown ? "..." : "") + "'";
}

void Fields::split(std::string_view line) {
  characters_.resize(line.size());
  std::size_t length = 0;
  std::size_t start = 0;
  size_ = 0;
  const auto end_field = [&] {
    if (size_ < kMost) {
      fields_[size_++] = std::string_view(characters_.data() + start, length - start);
    }
    start = length;
  };
  for (const char c : line) {
    if (c == ',') {
      end_field();
    } else if (!is_blank(c) && c != '\n') {
      characters_[length++] = capital(c);
    }
  }
  end_field();
}

bool looks_like_whole_number(std::string_view field) {
  if (!field.empty() && (field.front() == '-' || field.front() == '+')) field.remove_prefix(1);
  return !field.empty() && digits_from(field, 0) == field.size();
}

std::optional<std::int32_t> whole_number(std::string_view field) {
  if (field.size() > 10 || !looks_like_whole_number(field)) return std::nullopt;
  if (field.front() == '+') field.remove_prefix(1);
  std::int32_t value = 0;
  const auto [stop, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  if (error != std::errc() || stop != field.data() + field.size()) return std::nullopt;
  return value;
}

Reading read_number(std::string_view field, double& value) {
  if (field.size() <= kNumberWidth) return read_whole(field, value);
  double whole = 0;
  const Reading all = read_whole(field, whole);
  const Reading cut = read_whole(field.substr(0, kNumberWidth), value);
  if (cut != Reading::kNumber) return cut;
  return all == Reading::kNumber && whole == value ? Reading::kNumber : Reading::kCut;
}

NumberText number_text(double value) {
  std::array<char, 64> buffer{};
  char* const begin = buffer.data();
  char* const end = begin + buffer.size();
  const std::string shortest(begin, std::to_chars(begin, end, value).ptr);
  if (shortest.size() <= kNumberWidth) return {shortest, true};

  const auto scientific = std::to_chars(begin, end, value, std::chars_format::scientific).ptr;
  std::string text = dense(std::string_view(begin, static_cast<std::size_t>(scientific - begin)));
  for (int places = 16; text.size() > kNumberWidth; --places) {
    const auto rounded =
        std::to_chars(begin, end, value, std::chars_format::scientific, places).ptr;
    text = dense(std::string_view(begin, static_cast<std::size_t>(rounded - begin)));
  }
  double read_back = 0;
  read_number(text, read_back);
  return {text, read_back == value};
}

}  // namespace deck
