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

// The platform's longest text of a double has 24 characters; what is much longer was not written by
// a program and may stay as it is.
using Narrow = std::array<char, 64>;

/// Copies a number in narrow characters, piece by piece.
class Scan {
 public:
  explicit Scan(std::wstring_view text) : text_(text.substr(0, std::size(narrow_))) {}

  /// Takes the character if it is next.
  bool take(wchar_t c) {
    if (length_ == text_.size() || text_[length_] != c) return false;
    narrow_[length_++] = static_cast<char>(c);
    return true;
  }
  /// Takes digits; false when none is next.
  bool take_digits() {
    const std::size_t begin = length_;
    while (length_ < text_.size() && text_[length_] >= L'0' && text_[length_] <= L'9') {
      narrow_[length_] = static_cast<char>(text_[length_]);
      ++length_;
    }
    return length_ > begin;
  }

  [[nodiscard]] std::size_t length() const { return length_; }
  [[nodiscard]] std::string_view taken() const { return {narrow_.data(), length_}; }

 private:
  std::wstring_view text_;
  Narrow narrow_;
  std::size_t length_ = 0;
};

}  // namespace

std::optional<Literal> take_plain_number(std::wstring_view& text) {
  Scan scan(text);
  scan.take(L'-');
  if (!scan.take_digits()) return std::nullopt;
  bool is_integer = true;
  if (scan.take(L'.')) {
    is_integer = false;
    if (!scan.take_digits()) return std::nullopt;
  }
  if (scan.take(L'e')) {
    is_integer = false;
    scan.take(L'-') || scan.take(L'+');
    if (!scan.take_digits()) return std::nullopt;
  }
  const auto rest = text.substr(scan.length());
  if (!rest.empty() && rest.front() != L',') return std::nullopt;
  const auto value = is_integer ? parse<std::int64_t>(scan.taken()) : parse<double>(scan.taken());
  if (value) text = rest;
  return value;
}

std::optional<Literal> parse_number(std::wstring_view text) {
  Narrow narrow;
  if (text.starts_with(L'+')) text.remove_prefix(1);
  if (text.empty() || text.size() > narrow.size()) return std::nullopt;
  std::ranges::transform(text, narrow.begin(),
                         [](wchar_t c) { return c < 0x80 ? static_cast<char>(c) : '?'; });
  const std::string_view digits(narrow.data(), text.size());
  const bool is_integer = digits.find_first_of(".eE") == std::string_view::npos;
  return is_integer ? parse<std::int64_t>(digits) : parse<double>(digits);
}

}  // namespace modeldb
