#include "modeldb/engine/text_shape.h"

#include <algorithm>
#include <cstdint>

#include "modeldb/base/same_text.h"

namespace modeldb {
namespace {

constexpr std::size_t kLongestText = 1000;
/// Any number of so many digits has 64 bits.
constexpr std::size_t kMostDigits = 18;

bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool is_whole_number(std::wstring_view literal) {
  return literal.size() <= kMostDigits && std::ranges::all_of(literal, is_digit);
}

bool take(std::wstring_view& text, std::wstring_view piece) {
  if (!is_same_text(text.substr(0, piece.size()), piece)) return false;
  text.remove_prefix(piece.size());
  return true;
}

bool take_number(std::wstring_view& text, std::int64_t& number) {
  constexpr int kBase = 10;
  std::size_t length = 0;
  number = 0;
  while (length < text.size() && is_digit(text[length])) {
    if (length == kMostDigits) return false;
    number = number * kBase + (text[length++] - L'0');
  }
  text.remove_prefix(length);
  return length > 0;
}

}  // namespace

std::optional<TextShape> TextShape::of(std::wstring_view text, TextKind kind,
                                       const ReadText& read) {
  if (text.size() > kLongestText || !std::ranges::all_of(read.literals, is_whole_number)) {
    return std::nullopt;
  }
  TextShape shape;
  const wchar_t* begin = text.data();
  for (const auto literal : read.literals) {
    shape.pieces_.emplace_back(begin, literal.data());
    begin = literal.data() + literal.size();
  }
  shape.pieces_.emplace_back(begin, text.data() + text.size());
  shape.kind_ = kind;
  shape.sql_ = read.text;
  return shape;
}

bool TextShape::matches(std::wstring_view text, std::vector<Literal>& values) const {
  if (!take(text, pieces_.front())) return false;
  values.clear();
  for (auto piece = pieces_.begin() + 1; piece != pieces_.end(); ++piece) {
    std::int64_t number = 0;
    if (!take_number(text, number) || !take(text, *piece)) return false;
    values.emplace_back(number);
  }
  return text.empty();
}

}  // namespace modeldb
