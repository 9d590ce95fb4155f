#include "modeldb/odbc/client_dialect.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/tokeniser.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

/// Functions that compute something from their arguments and do nothing else.
constexpr std::wstring_view kFunctions =
    L" abs acos asin atan atan2 avg ceil ceiling coalesce cos cosh count cume_dist degrees "
    L"dense_rank"
    L" exp first_value floor lag last_value lead length ln log log10 lower ltrim max min mod "
    L"nth_value"
    L" ntile nullif percent_rank pi power radians rank replace round row_number rtrim sign sin sinh"
    L" sqrt substr substring sum tan tanh trim trunc upper ";

/// Those that the server knows by other names.
constexpr std::pair<std::wstring_view, std::wstring_view> kRenamed[] = {{L"ifnull", L"coalesce"},
                                                                        {L"instr", L"strpos"},
                                                                        {L"pow", L"power"},
                                                                        {L"char", L"chr"},
                                                                        {L"unicode", L"ascii"}};

/// Words that stand before a parenthesis and are no functions.
constexpr std::wstring_view kBeforeParenthesis =
    L" all and any as between by case cast distinct else escape except exists filter from having in"
    L" inner intersect is join left like limit materialized not of offset on or order over "
    L"partition"
    L" right select set some then union using values when where window with nothing conflict into ";

/// Words that would make a query change something, or take locks.
constexpr std::wstring_view kChanging =
    L" insert update delete merge truncate into copy lock share call do grant revoke create alter"
    L" drop ";

/// Columns that the server adds to every table, and words that are values to it. To a file they are
/// names like any other.
constexpr std::wstring_view kServersOwn =
    L" cmax cmin ctid current_catalog current_role current_schema current_user localtime"
    L" localtimestamp session_user system_user tableoid user xmax xmin ";
/// Types whose values are names of the server's own tables, functions and users.
constexpr std::wstring_view kServersTypes =
    L" regclass regcollation regconfig regdictionary regnamespace regoper regoperator regproc"
    L" regprocedure regrole regtype ";

bool is_among(std::wstring_view words, std::wstring_view word) {
  return words.find(L" " + std::wstring(word) + L" ") != std::wstring_view::npos;
}

std::wstring_view unquoted(const Token& token) {
  return token.kind == TokenKind::kQuotedName ? token.text.substr(1, token.text.size() - 2)
                                              : token.text;
}

class Translation {
 public:
  explicit Translation(std::wstring_view sql)
      : sql_(sql), tokens_(sql), token_(tokens_.next()), next_(tokens_.next()) {
    out_.reserve(sql.size() + sql.size() / 4);
  }

  std::wstring run() {
    is_query_ = token_.keyword == Keyword::kSelect || token_.keyword == Keyword::kWith;
    for (; token_.kind != TokenKind::kEnd; advance()) {
      if (token_.is_operator(L';')) continue;  // only the end may follow
      translate();
    }
    return std::move(out_);
  }

 private:
  /// What an open parenthesis encloses, where that matters at its end.
  enum class Open {
    kOther,
    kSource,   ///< a query in FROM
    kJoining,  ///< the values that group_concat joins, which are to be texts
  };

  void advance() {
    before_ = std::exchange(token_, next_);
    next_ = tokens_.next();
  }

  void put(std::wstring_view word) {
    if (!out_.empty()) out_ += L' ';
    out_ += word;
  }

  [[noreturn]] void refuse(const std::wstring& would) const {
    fail_on_text(kPermissionDenied, L"The statement " + quoted(sql_),
                 L" was refused: it would " + would +
                     L". Only the rows of the model's tables can be read, and through the "
                     L"connection changed.");
  }

  [[noreturn]] void fail_on(std::wstring_view what) const {
    fail_on_text(kErrorsInCommand, L"The statement " + quoted(sql_),
                 L" cannot be run: a model on a server knows no " + std::wstring(what) +
                     L" such as " + quoted(token_.text) + L". Write it in another way.");
  }

  void translate() {
    switch (token_.kind) {
      case TokenKind::kName:
      case TokenKind::kQuotedName:
        return translate_name();
      case TokenKind::kBlob:
        fail_on(L"bytes");
      case TokenKind::kNumber:
        if (token_.text.find_first_of(L"xX") != std::wstring_view::npos) {
          fail_on(L"hexadecimal numbers");
        }
        return put(token_.text);
      case TokenKind::kOperator:
        return translate_operator();
      case TokenKind::kParameter:
        return put(L"?");
      case TokenKind::kText:
        put(token_.text);
        return end_pattern();
      default:
        fail_on(L"characters");
    }
  }

  void translate_operator() {
    if (token_.is_operator(L'(')) {
      open_.push_back(next_opens_);
      next_opens_ = Open::kOther;
      if (open_.back() == Open::kOther && is_subquery()) open_.back() = Open::kSource;
      put(L"(");
      if (open_.back() == Open::kJoining) put(L"CAST (");
      return;
    }
    if (token_.is_operator(L',') && !open_.empty() && open_.back() == Open::kJoining) {
      open_.back() = Open::kOther;  // a separator is given
      return put(L"AS text ) ,");
    }
    if (!token_.is_operator(L')') || open_.empty()) {
      return put(token_.text == L"==" ? L"=" : token_.text);
    }
    if (open_.back() == Open::kJoining) put(L"AS text ) , ','");
    put(L")");
    // The rows of a query in FROM must have a name.
    const bool is_named = next_.kind == TokenKind::kQuotedName || next_.keyword == Keyword::kAs ||
                          (next_.kind == TokenKind::kName && next_.keyword == Keyword::kNone);
    if (open_.back() == Open::kSource && !is_named) {
      put(L"AS orv_" + std::to_wstring(++sources_));
    }
    open_.pop_back();
  }

  /// Whether the parenthesis here begins a query whose rows are read like those of a table.
  [[nodiscard]] bool is_subquery() const {
    const bool is_source = before_.keyword == Keyword::kFrom || before_.keyword == Keyword::kJoin;
    return is_source && (next_.keyword == Keyword::kSelect || next_.keyword == Keyword::kWith ||
                         next_.keyword == Keyword::kValues);
  }

  /// In a pattern of LIKE a reverse solidus is a character like any other.
  void end_pattern() {
    const bool is_pattern = before_.kind == TokenKind::kName && same_name(before_.text, L"LIKE");
    // Of a pattern that is put together only the whole could be followed by that.
    const bool is_whole = next_.kind != TokenKind::kOperator || next_.is_operator(L')') ||
                          next_.is_operator(L',') || next_.is_operator(L';');
    if (is_pattern && is_whole && !same_name(next_.text, L"ESCAPE")) put(L"ESCAPE ''");
  }

  void translate_name() {
    const std::wstring name = folded_name(unquoted(token_));
    const bool is_quoted = token_.kind == TokenKind::kQuotedName;
    if (!is_quoted && is_query_) require_reading(name);
    if (next_.is_operator(L'(') && (is_quoted || !is_among(kBeforeParenthesis, name))) {
      return put_called(name);
    }
    require_own(name);
    require_known(name);
    if (is_quoted) {
      std::wstring quoted_name = L"\"";
      for (const wchar_t letter : name) {
        // Between brackets or backquotes a quotation mark is a letter; otherwise it is doubled.
        quoted_name.append(letter == L'"' && token_.text.front() != L'"' ? 2 : 1, letter);
      }
      return put(quoted_name + L'"');
    }
    if (name == L"like") return put(L"ILIKE");
    put(token_.text);
  }

  /// What stands before a parenthesis: a function, or a table or expression's name that is followed
  /// by its columns.
  void put_called(const std::wstring& name) {
    const bool names_columns =
        before_.keyword == Keyword::kWith ||
        (before_.kind == TokenKind::kName && same_name(before_.text, L"INTO"));
    if (names_columns) {
      require_own(name);
      return put(token_.kind == TokenKind::kQuotedName ? L"\"" + name + L"\"" : name);
    }
    if (name == L"group_concat") {
      next_opens_ = Open::kJoining;
      return put(L"string_agg");
    }
    const auto* const renamed = std::ranges::find(kRenamed, std::wstring_view(name),
                                                  [](const auto& pair) { return pair.first; });
    if (renamed != std::end(kRenamed)) return put(renamed->second);
    if (is_among(kFunctions, name)) return put(name);
    refuse(L"call the function " + std::wstring(unquoted(token_)));
  }

  /// Only what a file's client reaches, too.
  void require_own(const std::wstring& name) const {
    if (name.starts_with(L"orv_") || name.starts_with(L"pg_") || name.starts_with(L"sqlite_") ||
        name == L"information_schema") {
      refuse(L"use the table " + std::wstring(unquoted(token_)));
    }
  }

  /// As a file answers, whose tables have no such column.
  void require_known(const std::wstring& name) const {
    if (is_among(kServersTypes, name)) fail_on(L"type");
    if (before_.keyword == Keyword::kAs || !is_among(kServersOwn, name)) return;
    const std::wstring written(unquoted(token_));
    fail_on_text(kErrorsInCommand, L"The statement " + quoted(sql_),
                 L" cannot be run: no such column: " + written + L". Correct it.",
                 {.missing_column = written, .last_word = {}});
  }

  void require_reading(const std::wstring& name) const {
    if (name == L"recursive") refuse(L"run a recursive query");
    if (!is_among(kChanging, name) || before_.is_operator(L'.') || next_.is_operator(L'.')) return;
    refuse(L"change something (" + std::wstring(token_.text) + L")");
  }

  const std::wstring_view sql_;
  Tokeniser tokens_;
  Token before_;
  Token token_;
  Token next_;
  bool is_query_ = false;
  Open next_opens_ = Open::kOther;
  std::vector<Open> open_;
  int sources_ = 0;
  std::wstring out_;
};

}  // namespace

std::wstring in_server_dialect(std::wstring_view sql) { return Translation(sql).run(); }

}  // namespace modeldb
