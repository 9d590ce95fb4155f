#include "modeldb/odbc/result_names.h"

#include <algorithm>

#include "modeldb/engine/tokeniser.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

std::wstring_view unquoted(const Token& token) {
  return token.kind == TokenKind::kQuotedName ? token.text.substr(1, token.text.size() - 2)
                                              : token.text;
}

bool is_name(const Token& token) {
  return token.kind == TokenKind::kQuotedName ||
         (token.kind == TokenKind::kName && token.keyword == Keyword::kNone);
}

}  // namespace

ResultNames::ResultNames(const Session& session, std::wstring_view sql) : session_(session) {
  note_aliases(sql);
  note_items(sql);
  note_only_table(sql);
}

/// "SELECT * FROM table" without another table, or "SELECT table.* FROM …".
void ResultNames::note_only_table(std::wstring_view sql) {
  std::vector<Token> tokens;
  Tokeniser tokeniser(sql);
  for (Token token = tokeniser.next(); token.kind != TokenKind::kEnd; token = tokeniser.next()) {
    tokens.push_back(token);
  }
  if (tokens.size() < 4 || tokens[0].keyword != Keyword::kSelect) return;
  if (tokens[1].is_operator(L'*') && tokens[2].keyword == Keyword::kFrom && is_name(tokens[3])) {
    const Keyword next = tokens.size() == 4 ? Keyword::kWhere : tokens[4].keyword;
    if (next == Keyword::kWhere || next == Keyword::kOrder) only_table_ = unquoted(tokens[3]);
  } else if (tokens.size() > 4 && is_name(tokens[1]) && tokens[2].is_operator(L'.') &&
             tokens[3].is_operator(L'*') && tokens[4].keyword == Keyword::kFrom) {
    only_table_ = unquoted(tokens[1]);
  }
  only_table_ = folded_name(only_table_);
}

void ResultNames::note_aliases(std::wstring_view sql) {
  Tokeniser tokens(sql);
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd;) {
    const bool is_as = token.keyword == Keyword::kAs;
    token = tokens.next();
    if (is_as && is_name(token)) aliases_.emplace(folded_name(unquoted(token)), unquoted(token));
  }
}

/// The items of the list that a SELECT begins with, up to its FROM.
void ResultNames::note_items(std::wstring_view sql) {
  Tokeniser tokens(sql);
  if (tokens.next().keyword != Keyword::kSelect) return;
  int depth = 0;
  Token first;
  Token last;
  int length = 0;
  bool is_path = true;  // names and points alone
  bool has_alias = false;
  for (Token token = tokens.next();; token = tokens.next()) {
    const bool ends_list =
        token.kind == TokenKind::kEnd || token.keyword == Keyword::kFrom || token.is_operator(L';');
    if (depth == 0 && (ends_list || token.is_operator(L','))) {
      if (length == 0) return items_.clear();
      Item& item = items_.emplace_back();
      item.is_all = is_path && last.is_operator(L'*');
      if (!is_path && !has_alias) item.text.assign(first.text.data(), last.end());
      first = last = {};
      length = 0;
      is_path = true;
      has_alias = false;
      if (ends_list) return;
      continue;
    }
    if (token.kind == TokenKind::kEnd) return items_.clear();
    if (token.is_operator(L'(')) ++depth;
    if (token.is_operator(L')')) --depth;
    // A name behind something that ends a value is an alias, with AS or without.
    if (depth == 0 && length > 0 && is_name(token) && last.kind != TokenKind::kOperator) {
      has_alias = true;
    }
    if (depth == 0 && length > 0 && is_name(token) && last.is_operator(L')')) has_alias = true;
    const bool is_all =
        token.is_operator(L'*') && depth == 0 && (length == 0 || last.is_operator(L'.'));
    if (!is_name(token) && !token.is_operator(L'.') && !is_all) is_path = false;
    if (length++ == 0) first = token;
    last = token;
  }
}

std::wstring ResultNames::of(int column, const std::wstring& name) const {
  const bool has_text = static_cast<std::size_t>(column) < items_.size() &&
                        std::ranges::none_of(items_, &Item::is_all);
  if (has_text && !items_[column].text.empty()) return items_[column].text;
  const auto alias = aliases_.find(name);
  return alias == aliases_.end() ? session_.spelled(name) : alias->second;
}

}  // namespace modeldb
