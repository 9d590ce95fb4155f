#include "modeldb/engine/tokeniser.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "modeldb/base/ascii.h"

namespace modeldb {
namespace {

enum CharacterClass : std::uint8_t {
  kSpace = 1,
  kDigit = 2,
  kHexDigit = 4,
  kLetter = 8,
  kInName = 16
};

/// What SQLite takes each ASCII character for.
constexpr auto kClasses = [] {
  std::array<std::uint8_t, 128> classes{};
  for (const char c : {' ', '\t', '\n', '\f', '\r'}) classes[c] = kSpace;
  for (char c = '0'; c <= '9'; ++c) classes[c] = kDigit | kHexDigit | kInName;
  for (char c = 'a'; c <= 'z'; ++c) classes[c] = classes[c - 'a' + 'A'] = kLetter | kInName;
  for (char c = 'a'; c <= 'f'; ++c) classes[c] = classes[c - 'a' + 'A'] |= kHexDigit;
  classes['_'] = kLetter | kInName;
  classes['$'] = kInName;
  return classes;
}();

/// Characters beyond ASCII are letters.
constexpr bool is(CharacterClass wanted, wchar_t c) {
  return ((c < kClasses.size() ? kClasses[c] : kLetter | kInName) & wanted) != 0;
}

/// How many characters of `text` from `start` on are of the class.
std::size_t run_length(std::wstring_view text, std::size_t start, CharacterClass wanted) {
  std::size_t end = start;
  while (end < text.size() && is(wanted, text[end])) ++end;
  return end - start;
}

}  // namespace

Token Tokeniser::next() {
  do {
    rest_.remove_prefix(run_length(rest_, 0, kSpace));
  } while (skip_comment());
  if (rest_.empty()) return take(TokenKind::kEnd, 0);

  const wchar_t first = rest_[0];
  const wchar_t second = rest_.size() > 1 ? rest_[1] : L'\0';
  if (is(kDigit, first) || (first == L'.' && is(kDigit, second))) return take_number();
  if (folded(first) == L'x' && second == L'\'') return take_quoted(TokenKind::kBlob, 2, L'\'');
  if (is(kLetter, first)) return take_word();
  switch (first) {
    case L'\'':
      return take_quoted(TokenKind::kText, 1, L'\'');
    case L'"':
    case L'`':
      return take_quoted(TokenKind::kQuotedName, 1, first);
    case L'[':
      return take_quoted(TokenKind::kQuotedName, 1, L']');
    case L'?':
    case L':':
    case L'@':
    case L'$':
      return take_parameter();
    default:
      return take_operator();
  }
}

Token Tokeniser::take(TokenKind kind, std::size_t length) {
  const Token token{kind, Keyword::kNone, rest_.substr(0, length)};
  rest_.remove_prefix(length);
  return token;
}

/// Skips the comment that begins here; false when none does. One without an end is none.
bool Tokeniser::skip_comment() {
  std::size_t end = 0;
  if (rest_.starts_with(L"--")) {
    end = std::min(rest_.find(L'\n'), rest_.size() - 1) + 1;
  } else if (rest_.starts_with(L"/*")) {
    end = rest_.find(L"*/", 2);
    if (end == std::wstring_view::npos) return false;
    end += 2;
  } else {
    return false;
  }
  rest_.remove_prefix(end);
  return has_seen_comment_ = true;
}

Token Tokeniser::take_number() {
  std::size_t length = 0;
  const auto skip_digits = [&] { length += run_length(rest_, length, kDigit); };
  if (rest_[0] == L'0' && rest_.size() > 1 && folded(rest_[1]) == L'x') {
    length = 2 + run_length(rest_, 2, kHexDigit);
  } else {
    skip_digits();
    if (length < rest_.size() && rest_[length] == L'.') {
      ++length;
      skip_digits();
    }
    if (length < rest_.size() && folded(rest_[length]) == L'e') {
      std::size_t exponent = length + 1;
      if (exponent < rest_.size() && (rest_[exponent] == L'+' || rest_[exponent] == L'-')) {
        ++exponent;
      }
      if (const auto digits = run_length(rest_, exponent, kDigit)) length = exponent + digits;
    }
  }
  const auto glued = run_length(rest_, length, kInName);
  return take(glued ? TokenKind::kInvalid : TokenKind::kNumber, length + glued);
}

Token Tokeniser::take_word() {
  Token token = take(TokenKind::kName, run_length(rest_, 0, kInName));
  token.keyword = keyword_of(token.text);
  return token;
}

Token Tokeniser::take_parameter() {
  const auto length = 1 + run_length(rest_, 1, kInName);
  return take(length > 1 || rest_[0] == L'?' ? TokenKind::kParameter : TokenKind::kInvalid, length);
}

/// What stands between `open` characters and `close`. A doubled quote is one that is meant; blobs
/// and names in brackets know no such thing.
Token Tokeniser::take_quoted(TokenKind kind, std::size_t open, wchar_t close) {
  const bool may_double = kind != TokenKind::kBlob && close != L']';
  std::size_t end = rest_.find(close, open);
  while (may_double && end != std::wstring_view::npos && end + 1 < rest_.size() &&
         rest_[end + 1] == close) {
    end = rest_.find(close, end + 2);
  }
  if (end == std::wstring_view::npos) return take(TokenKind::kInvalid, rest_.size());
  return take(kind, end + 1);
}

Token Tokeniser::take_operator() {
  static constexpr std::array<std::wstring_view, 10> kLongOperators = {
      L"->>", L"->", L"||", L"<<", L">>", L"<=", L">=", L"<>", L"!=", L"=="};
  static constexpr std::wstring_view kSecondOfLong = L">|<=";
  static constexpr std::wstring_view kOperators = L"+-*/%=<>&|~(),;.";
  // A comment without its end would swallow what follows.
  if (rest_.starts_with(L"/*")) return take(TokenKind::kInvalid, rest_.size());
  if (rest_.size() > 1 && kSecondOfLong.find(rest_[1]) != std::wstring_view::npos) {
    for (const auto symbol : kLongOperators) {
      if (rest_.starts_with(symbol)) return take(TokenKind::kOperator, symbol.size());
    }
  }
  const bool is_known = kOperators.find(rest_[0]) != std::wstring_view::npos;
  return take(is_known ? TokenKind::kOperator : TokenKind::kInvalid, 1);
}

}  // namespace modeldb
