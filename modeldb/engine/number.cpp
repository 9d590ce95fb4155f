#include "modeldb/engine/number.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace modeldb {
namespace {

template <class Number>
std::optional<Literal> parse(std::string_view text) {
  Number value{};
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::optional<Literal> parse_number(std::wstring_view text) {
  // The platform's longest text of a double has 24 characters; what is much longer was not written
  // by a program and may stay as it is.
  std::array<char, 64> narrow;
  if (text.starts_with(L'+')) text.remove_prefix(1);
  if (text.empty() || text.size() > narrow.size()) return std::nullopt;
  std::ranges::transform(text, narrow.begin(),
                         [](wchar_t c) { return c < 0x80 ? static_cast<char>(c) : '?'; });
  const std::string_view digits(narrow.data(), text.size());
  const bool is_integer = digits.find_first_of(".eE") == std::string_view::npos;
  return is_integer ? parse<std::int64_t>(digits) : parse<double>(digits);
}

}  // namespace modeldb
