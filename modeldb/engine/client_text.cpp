#include "modeldb/engine/client_text.h"

#include <optional>
#include <utility>

#include "modeldb/base/failure.h"
#include "modeldb/engine/number.h"
#include "modeldb/engine/tokeniser.h"

namespace modeldb {
namespace {

bool is_comparison(const Token& token) {
  if (token.kind != TokenKind::kOperator) return false;
  const wchar_t first = token.text.front();
  const wchar_t last = token.text.back();
  return last == L'=' || (token.text.size() == 1 && (first == L'<' || first == L'>')) ||
         token.text == L"<>";
}

bool is_sign(const Token& token) { return token.is_operator(L'-') || token.is_operator(L'+'); }

bool ends_statement(const Token& token) {
  return token.kind == TokenKind::kEnd || token.is_operator(L';');
}

bool changes_rows(TextKind kind) {
  return kind == TextKind::kInsert || kind == TextKind::kUpdate || kind == TextKind::kDelete;
}

TextKind kind_of(const Token& first, std::wstring_view text) {
  switch (first.keyword) {
    case Keyword::kSelect:
    case Keyword::kWith:
      return TextKind::kSelect;
    case Keyword::kInsert:
      return TextKind::kInsert;
    case Keyword::kUpdate:
      return TextKind::kUpdate;
    case Keyword::kDelete:
      return TextKind::kDelete;
    case Keyword::kBegin:
      return TextKind::kBegin;
    case Keyword::kCommit:
      return TextKind::kCommit;
    case Keyword::kRollback:
      return TextKind::kRollback;
    default:
      fail_on_text(
          kPermissionDenied, L"The text " + quoted(text),
          L" was refused: the model database runs SELECT, INSERT, UPDATE, DELETE, and BEGIN, "
          L"COMMIT and ROLLBACK TRANSACTION. Use one of these.");
  }
}

/// Reads one text, token by token, and copies it with its literals replaced.
class Reader {
 public:
  Reader(std::wstring_view text, ReadText& out)
      : text_(text), out_(out), tokens_(text), token_(tokens_.next()), next_(tokens_.next()) {}

  TextKind read() {
    out_.clear();
    kind_ = kind_of(token_, text_);
    while (!ends_statement(token_)) {
      refuse_forbidden();
      note_place();
      replace_literal();
      advance();
    }
    refuse_rest();
    finish_copy();
    return kind_;
  }

 private:
  /// Where literals may be replaced by parameters.
  enum class Place { kNowhere, kValues, kAssignments, kCondition };

  void advance() {
    before_sign_ = std::exchange(previous_, std::exchange(token_, next_));
    next_ = tokens_.next();
  }

  void refuse_forbidden() const {
    if (token_.kind == TokenKind::kInvalid) {
      fail_on_text(kErrorsInCommand, L"The text " + quoted(text_),
                   L" cannot be read from " + quoted(token_.text) + L" on. Correct it there.");
    }
    if (token_.kind == TokenKind::kParameter) {
      fail_on_text(
          kErrorsInCommand, L"The text " + quoted(text_),
          L" has the parameter " + quoted(token_.text) + L". Write the value in its place.");
    }
    if (changes_rows(kind_) && token_.keyword == Keyword::kReturning) {
      fail_on_text(kPermissionDenied, L"The text " + quoted(text_),
                   L" was refused because of RETURNING. Read the rows with a SELECT.");
    }
  }

  /// Nothing may follow the statement, and a change must be legible without comments.
  void refuse_rest() {
    while (token_.is_operator(L';')) advance();
    if (token_.kind != TokenKind::kEnd) {
      fail_on_text(kPermissionDenied, L"The text " + quoted(text_),
                   L" was refused: it holds more than one statement. Execute them "
                   L"one by one.");
    }
    if (kind_ != TextKind::kSelect && tokens_.has_seen_comment()) {
      fail_on_text(kPermissionDenied, L"The text " + quoted(text_),
                   L" was refused because of the comment in it. Take it out.");
    }
  }

  void note_place() {
    if (token_.kind == TokenKind::kName) {
      note_keyword();
    } else if (token_.is_operator(L'(')) {
      ++depth_;
    } else if (token_.is_operator(L')')) {
      --depth_;
      const bool ends_row = place_ == Place::kValues && depth_ == 0;
      if (ends_row && !ends_statement(next_)) keep_literals();
    }
  }

  void note_keyword() {
    if (token_.keyword == Keyword::kSelect && (kind_ != TextKind::kSelect || ++selects_ > 1)) {
      keep_literals();
    }
    if (depth_ != 0) return;
    switch (token_.keyword) {
      case Keyword::kValues:
        if (kind_ == TextKind::kInsert) place_ = Place::kValues;
        break;
      case Keyword::kSet:
        if (kind_ == TextKind::kUpdate) place_ = Place::kAssignments;
        break;
      case Keyword::kWhere:
        place_ = Place::kCondition;
        break;
      case Keyword::kGroup:
      case Keyword::kOrder:
      case Keyword::kHaving:
      case Keyword::kLimit:
      case Keyword::kWindow:
      case Keyword::kUnion:
      case Keyword::kExcept:
      case Keyword::kIntersect:
        place_ = Place::kNowhere;
        break;
      default:
        break;
    }
  }

  /// From here on nothing is replaced, and what was replaced is taken back.
  void keep_literals() {
    keeps_literals_ = true;
    out_.clear();
    copied_ = 0;
  }

  void replace_literal() {
    if (place_ == Place::kNowhere || keeps_literals_) return;
    const bool is_number = token_.kind == TokenKind::kNumber;
    if (!is_number && token_.kind != TokenKind::kText) return;
    const bool has_sign = is_number && is_sign(previous_) && previous_.end() == token_.text.data();
    if (!stands_alone(has_sign ? before_sign_ : previous_)) return;
    const wchar_t* const begin = has_sign ? previous_.text.data() : token_.text.data();
    const std::wstring_view literal(begin, token_.end());
    if (const auto value = is_number ? parse_number(literal) : plain_text(literal)) {
      copy_to(begin - text_.data());
      out_.text += L'?';
      out_.values.push_back(*value);
      out_.literals.push_back(literal);
      copied_ = token_.end() - text_.data();
    }
  }

  /// Whether the literal between `before` and the next token is the whole of a value.
  [[nodiscard]] bool stands_alone(const Token& before) const {
    switch (place_) {
      case Place::kValues:
        return depth_ == 1 && (before.is_operator(L'(') || before.is_operator(L',')) &&
               (next_.is_operator(L',') || next_.is_operator(L')'));
      case Place::kAssignments:
        return depth_ == 0 && before.is_operator(L'=') &&
               (next_.is_operator(L',') || next_.keyword == Keyword::kWhere ||
                ends_statement(next_));
      case Place::kCondition:
        return is_comparison(before) && ends_comparison(next_);
      case Place::kNowhere:
        return false;
    }
    return false;
  }

  static bool ends_comparison(const Token& token) {
    switch (token.keyword) {
      case Keyword::kAnd:
      case Keyword::kOr:
      case Keyword::kGroup:
      case Keyword::kOrder:
      case Keyword::kLimit:
        return true;
      default:
        return token.is_operator(L')') || ends_statement(token);
    }
  }

  /// The characters of a text literal; nothing when it has doubled quotes, which would have to be
  /// copied to be undone.
  static std::optional<Literal> plain_text(std::wstring_view literal) {
    const auto inside = literal.substr(1, literal.size() - 2);
    if (inside.find(L'\'') != std::wstring_view::npos) return std::nullopt;
    return inside;
  }

  void copy_to(std::size_t end) { out_.text.append(text_, copied_, end - copied_); }
  void finish_copy() { copy_to(text_.size()); }

  std::wstring_view text_;
  ReadText& out_;
  Tokeniser tokens_;
  Token before_sign_;
  Token previous_;
  Token token_;
  Token next_;
  TextKind kind_ = TextKind::kSelect;
  Place place_ = Place::kNowhere;
  int depth_ = 0;
  int selects_ = 0;
  bool keeps_literals_ = false;
  std::size_t copied_ = 0;  // how much of the text is in the output
};

bool is_transaction(Keyword keyword) {
  return keyword == Keyword::kBegin || keyword == Keyword::kCommit || keyword == Keyword::kRollback;
}

/// "BEGIN TRANSACTION" and the like, as collections write them.
std::optional<TextKind> plain_transaction(std::wstring_view text) {
  Tokeniser tokens(text);
  const Token first = tokens.next();
  if (!is_transaction(first.keyword)) return std::nullopt;
  const bool is_plain = tokens.next().keyword == Keyword::kTransaction &&
                        tokens.next().kind == TokenKind::kEnd && !tokens.has_seen_comment();
  return is_plain ? std::optional(kind_of(first, text)) : std::nullopt;
}

/// BEGIN, COMMIT or ROLLBACK, with or without TRANSACTION: nothing else.
void check_transaction(std::wstring_view text) {
  Tokeniser tokens(text);
  tokens.next();
  Token token = tokens.next();
  if (token.keyword == Keyword::kTransaction) token = tokens.next();
  if (ends_statement(token)) return;
  fail_on_text(kErrorsInCommand, L"The text " + quoted(text),
               L" cannot be run because of " + quoted(token.text) +
                   L". Write BEGIN, COMMIT or ROLLBACK TRANSACTION alone.");
}

}  // namespace

bool is_blank(std::wstring_view text) { return ends_statement(Tokeniser(text).next()); }

bool is_query(std::wstring_view text) {
  const Keyword first = Tokeniser(text).next().keyword;
  return first == Keyword::kSelect || first == Keyword::kWith;
}

TextKind read_client_text(std::wstring_view text, ReadText& out) {
  // A transaction can be ended when there is no memory left.
  if (const auto kind = plain_transaction(text)) return *kind;
  const TextKind kind = Reader(text, out).read();
  if (kind != TextKind::kSelect && !changes_rows(kind)) check_transaction(text);
  return kind;
}

}  // namespace modeldb
