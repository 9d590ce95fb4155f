#include "modeldb/engine/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace modeldb {
namespace {

template <class Number>
std::optional<Number> parse(std::string_view text) {
  Number value{};
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

/// Appends it as it is: a Literal that is made elsewhere and copied costs as much as the parsing.
template <class Number>
bool append(std::string_view text, std::vector<Literal>& values) {
  const auto number = parse<Number>(text);
  if (number) values.emplace_back(*number);
  return number.has_value();
}

// The platform's longest text of a double has 24 characters; what is much longer was not written by
// a program and may stay as it is.
using Narrow = std::array<char, 64>;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Below it, a double has every integer.
constexpr double kMostWhole = 9007199254740992.0;

}  // namespace

Literal literal_of(double number) {
  const bool is_whole = std::fabs(number) < kMostWhole && std::trunc(number) == number;
  return is_whole ? Literal(static_cast<std::int64_t>(number)) : Literal(number);
}

bool take_plain_number(std::wstring_view& text, std::vector<Literal>& values) {
  Narrow narrow;
  std::size_t length = 0;
  bool is_integer = true;
  for (; length < text.size() && text[length] != L','; ++length) {
    const wchar_t c = text[length];
    if (length == narrow.size() || c >= 0x80) return false;
    narrow[length] = static_cast<char>(c);
    is_integer = is_integer && (is_digit(narrow[length]) || (c == L'-' && length == 0));
  }
  const std::string_view number(narrow.data(), length);
  // Otherwise it may be the name of an infinite number, or of none.
  const std::size_t first = number.starts_with('-') ? 1 : 0;
  if (first == length || !is_digit(number[first])) return false;
  const bool is_taken =
      is_integer ? append<std::int64_t>(number, values) : append<double>(number, values);
  if (is_taken) text.remove_prefix(length);
  return is_taken;
}

std::optional<Literal> parse_number(std::wstring_view text) {
  Narrow narrow;
  if (text.starts_with(L'+')) text.remove_prefix(1);
  if (text.empty() || text.size() > narrow.size()) return std::nullopt;
  std::ranges::transform(text, narrow.begin(),
                         [](wchar_t c) { return c < 0x80 ? static_cast<char>(c) : '?'; });
  const std::string_view digits(narrow.data(), text.size());
  const bool is_integer = digits.find_first_of(".eE") == std::string_view::npos;
  if (is_integer) return parse<std::int64_t>(digits);
  return parse<double>(digits);
}

}  // namespace modeldb
