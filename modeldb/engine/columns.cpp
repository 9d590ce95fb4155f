#include "modeldb/engine/columns.h"

#include <algorithm>
#include <utility>

#include "modeldb/base/ascii.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/tokeniser.h"

namespace modeldb {
namespace {

/// Whether the word after a table's name in FROM is an alias: no keyword may be one unquoted.
bool is_alias(const Token& token) {
  return token.kind == TokenKind::kQuotedName ||
         (token.kind == TokenKind::kName && token.keyword == Keyword::kNone);
}

std::wstring_view unquoted(const Token& token) {
  return token.kind == TokenKind::kQuotedName ? token.text.substr(1, token.text.size() - 2)
                                              : token.text;
}

/// Calls `visit(name, table)` for every table in the statement's FROM clauses with the name that it
/// goes by there: its alias, or else its own.
template <class Visit>
void for_each_source(std::wstring_view sql, Visit&& visit) {
  Tokeniser tokens(sql);
  bool expects_table = false;
  bool in_from = false;
  for (Token token = tokens.next(); token.kind != TokenKind::kEnd;) {
    if (!expects_table || token.is_operator(L'(')) {
      if (token.keyword == Keyword::kFrom) in_from = true;
      if (token.keyword == Keyword::kWhere || token.keyword == Keyword::kOn) in_from = false;
      expects_table = token.keyword == Keyword::kFrom || token.keyword == Keyword::kJoin ||
                      (in_from && token.is_operator(L','));
      token = tokens.next();
      continue;
    }
    const auto table = unquoted(token);
    token = tokens.next();
    if (token.keyword == Keyword::kAs) token = tokens.next();
    visit(is_alias(token) ? unquoted(token) : table, table);
    expects_table = false;
  }
}

}  // namespace

Columns::Columns(std::vector<ResultColumn> columns, std::wstring_view sql)
    : columns_(std::move(columns)) {
  for (int i = 0; i < size(); ++i) {
    const auto [first, is_new] = by_name_.emplace(columns_[i].name, i);
    if (!is_new) columns_[first->second].ambiguous = columns_[i].ambiguous = true;
  }
  for_each_source(sql, [&](auto name, auto table) {
    sources_.push_back({std::wstring(name), std::wstring(table)});
  });
}

int Columns::find(std::wstring_view name) const {
  int found = find_by_name(name);
  const auto dot = name.rfind(L'.');
  if (found == kNotFound && dot != std::wstring_view::npos) {
    found = find_by_origin(name.substr(0, dot), name.substr(dot + 1));
  }
  if (found == kAmbiguous) {
    fail(kItemNotFound, L"The rows have several fields called " + quoted(name) +
                            L". Give each a name of its own in the statement, with AS.");
  }
  if (found == kNotFound) {
    fail(kItemNotFound, L"The rows have no field " + quoted(name) + L", only " + list() +
                            L". Use one of these, or a statement that selects the field.");
  }
  return found;
}

int Columns::find_by_name(std::wstring_view name) const {
  int column = expected_next_;
  if (column >= size() || !same_name(columns_[column].name, name)) {
    const auto found = by_name_.find(name);
    if (found == by_name_.end()) return kNotFound;
    column = found->second;
  }
  expected_next_ = column + 1 < size() ? column + 1 : 0;
  return columns_[column].ambiguous ? kAmbiguous : column;
}

int Columns::find_by_origin(std::wstring_view source, std::wstring_view name) const {
  const std::wstring_view table = table_of(source);
  int found = kNotFound;
  for (int i = 0; i < size(); ++i) {
    if (!same_name(columns_[i].table, table) || !same_name(columns_[i].origin, name)) continue;
    if (found != kNotFound || is_joined_with_itself(table)) return kAmbiguous;
    found = i;
  }
  return found;
}

/// The table that goes by `name` in the statement.
std::wstring_view Columns::table_of(std::wstring_view name) const {
  const auto source = std::ranges::find_if(
      sources_, [&](const Source& candidate) { return same_name(candidate.name, name); });
  return source == sources_.end() ? name : source->table;
}

/// An engine tells the table of a column, but not which of its occurrences in the statement.
bool Columns::is_joined_with_itself(std::wstring_view table) const {
  return std::ranges::count_if(
             sources_, [&](const Source& source) { return same_name(source.table, table); }) > 1;
}

std::wstring Columns::list() const {
  std::wstring names;
  for (const ResultColumn& column : columns_)
    names.append(names.empty() ? L"" : L", ").append(column.name);
  return names;
}

}  // namespace modeldb
