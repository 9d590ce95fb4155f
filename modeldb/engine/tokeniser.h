#pragma once

#include <string_view>

#include "modeldb/engine/keyword.h"

namespace modeldb {

enum class TokenKind {
  kEnd,
  kName,        // also keywords
  kQuotedName,  // "name", [name] or `name`
  kText,        // 'text'
  kNumber,
  kBlob,       // x'00ff'
  kParameter,  // ?, ?1, :name, @name, $name
  kOperator,   // also punctuation
  kInvalid,    // nothing that SQL knows, such as a text without its end
};

/// One word of a statement; `text` is the piece of the statement that it is.
struct Token {
  TokenKind kind = TokenKind::kEnd;
  Keyword keyword = Keyword::kNone;
  std::wstring_view text;

  [[nodiscard]] bool is_operator(wchar_t symbol) const {
    return kind == TokenKind::kOperator && text.size() == 1 && text[0] == symbol;
  }
  [[nodiscard]] const wchar_t* end() const { return text.data() + text.size(); }
};

/// Splits a statement into words by SQLite's rules. White space and comments stand between words.
class Tokeniser {
 public:
  explicit Tokeniser(std::wstring_view sql) : rest_(sql) {}

  Token next();
  /// Whether a comment stood before a word that was taken so far.
  [[nodiscard]] bool has_seen_comment() const { return has_seen_comment_; }

 private:
  /// The next `length` characters as a token.
  Token take(TokenKind kind, std::size_t length);
  bool skip_comment();
  Token take_number();
  Token take_word();
  Token take_parameter();
  Token take_quoted(TokenKind kind, std::size_t open, wchar_t close);
  Token take_operator();

  std::wstring_view rest_;
  bool has_seen_comment_ = false;
};

}  // namespace modeldb
