#include "modeldb/store/row_text.h"

#include <optional>
#include <string>
#include <utility>

#include "modeldb/base/failure.h"
#include "modeldb/engine/number.h"
#include "modeldb/engine/tokeniser.h"

namespace modeldb {
namespace {

[[noreturn]] void refuse(std::wstring_view text, std::wstring_view expected) {
  fail(kInvalidArgument, L"The record's text " + quoted(text) + L" was refused: it must be " +
                             std::wstring(expected) +
                             L". Check what the record answers for its SQL text.");
}

/// Walks one of the record's texts and takes what is expected, or refuses the text.
class Walk {
 public:
  Walk(std::wstring_view text, std::wstring_view expected)
      : text_(text), expected_(expected), tokens_(text), token_(tokens_.next()) {}

  [[nodiscard]] bool at_end() const { return token_.kind == TokenKind::kEnd; }

  std::wstring_view name() {
    if (token_.kind != TokenKind::kName) refuse();
    return advance().text;
  }

  void symbol(wchar_t symbol) {
    if (!token_.is_operator(symbol)) refuse();
    advance();
  }

  /// The value in a column, up to the next comma.
  Literal number(std::size_t column) {
    const wchar_t* const begin = token_.text.data();
    if (token_.kind == TokenKind::kName && token_.text == L"NULL") {
      advance();
      return nullptr;
    }
    if (token_.is_operator(L'-')) advance();
    const auto value =
        token_.kind == TokenKind::kNumber ? parse_number({begin, token_.end()}) : std::nullopt;
    if (value) advance();
    if (!value || !(at_end() || token_.is_operator(L','))) {
      const auto text = text_.substr(begin - text_.data());
      throw NoNumber{column, text.substr(0, text.find(L','))};
    }
    return *value;
  }

  /// What was taken must be the whole text, and comments no part of it.
  void finish() const {
    if (!at_end() || tokens_.has_seen_comment()) refuse();
  }

 private:
  [[noreturn]] void refuse() const { modeldb::refuse(text_, expected_); }

  Token advance() { return std::exchange(token_, tokens_.next()); }

  std::wstring_view text_;
  std::wstring_view expected_;
  Tokeniser tokens_;
  Token token_;
};

/// `text` without its first part, which must be `part`.
std::wstring_view without(std::wstring_view text, std::wstring_view part, std::wstring_view whole,
                          std::wstring_view expected) {
  if (!text.starts_with(part)) refuse(whole, expected);
  return text.substr(part.size());
}

/// `text` without the quoted description that it begins with.
std::wstring_view without_description(std::wstring_view text, std::wstring_view description,
                                      std::wstring_view whole, std::wstring_view expected) {
  text = without(text, L"'", whole, expected);
  text = without(text, description, whole, expected);
  return without(text, L"'", whole, expected);
}

void append_assignment(std::wstring_view column, Literal value, BoundText& out) {
  out.text.append(column).append(L" = ?");
  out.values.push_back(value);
}

}  // namespace

void append_values(std::wstring_view values, std::wstring_view description,
                   std::vector<Literal>& out) {
  static constexpr std::wstring_view kExpected = L"the description and then numbers";
  auto numbers = without_description(values, description, values, kExpected);
  out.emplace_back(description);
  // As records write it; anything else is left to the words of the text.
  constexpr std::wstring_view kComma = L", ";
  while (numbers.starts_with(kComma)) {
    auto rest = numbers.substr(kComma.size());
    if (!take_plain_number(rest, out)) break;
    numbers = rest;
  }
  Walk walk(numbers, kExpected);
  while (!walk.at_end()) {
    walk.symbol(L',');
    out.push_back(walk.number(out.size()));
  }
  walk.finish();
}

void append_assignments(std::wstring_view assignments, std::wstring_view description,
                        BoundText& out) {
  static constexpr std::wstring_view kExpected =
      L"a column with the description and then columns with numbers";
  const auto quote = assignments.find(L'\'');
  if (quote == std::wstring_view::npos) refuse(assignments, kExpected);
  Walk head(assignments.substr(0, quote), kExpected);
  const auto column = head.name();
  head.symbol(L'=');
  head.finish();
  append_assignment(column, description, out);

  Walk walk(without_description(assignments.substr(quote), description, assignments, kExpected),
            kExpected);
  while (!walk.at_end()) {
    walk.symbol(L',');
    const auto name = walk.name();
    walk.symbol(L'=');
    out.text += L", ";
    append_assignment(name, walk.number(out.values.size()), out);
  }
  walk.finish();
}

}  // namespace modeldb
