#include "modeldb/odbc/rows_ahead.h"

#include <algorithm>
#include <utility>

#include "modeldb/engine/tokeniser.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

/// Rows that are fetched at once: enough to make the way count for little.
constexpr std::size_t kKeysAtOnce = 5000;

bool is_word(const Token& token, std::wstring_view word) {
  return token.kind == TokenKind::kName && folded_name(token.text) == word;
}

bool is_name(const Token& token) {
  return token.kind == TokenKind::kName && token.keyword == Keyword::kNone;
}

}  // namespace

std::optional<QueryByKey> QueryByKey::of(std::wstring_view sql) {
  std::vector<Token> tokens;
  Tokeniser tokeniser(sql);
  for (Token token = tokeniser.next(); token.kind != TokenKind::kEnd; token = tokeniser.next()) {
    tokens.push_back(token);
  }
  const std::size_t size = tokens.size();
  if (size < 8 || !is_word(tokens[0], L"select") || is_word(tokens[1], L"distinct")) return {};
  if (tokens[size - 1].kind != TokenKind::kParameter || !tokens[size - 2].is_operator(L'=')) {
    return {};
  }
  // "column", or "table.column".
  const bool has_table = tokens[size - 4].is_operator(L'.');
  const std::size_t path = size - (has_table ? 5 : 3);
  if (!is_name(tokens[size - 3]) || !is_name(tokens[path]) ||
      !is_word(tokens[path - 1], L"where")) {
    return {};
  }
  for (std::size_t i = 1; i < path - 1; ++i) {
    const bool is_simple = tokens[i].kind == TokenKind::kName ||
                           tokens[i].kind == TokenKind::kQuotedName ||
                           tokens[i].is_operator(L'.') || tokens[i].is_operator(L',') ||
                           tokens[i].is_operator(L'*') || tokens[i].is_operator(L'=');
    if (!is_simple || is_word(tokens[i], L"where") || is_word(tokens[i], L"select")) return {};
  }
  const std::wstring column(tokens[path].text.data(), tokens[size - 3].end());
  const auto head = static_cast<std::size_t>(tokens[1].text.data() - sql.data());
  const auto tail = static_cast<std::size_t>(tokens[size - 2].text.data() - sql.data());
  const bool is_single = is_word(tokens[path - 3], L"from");
  return QueryByKey{.column = folded_name(tokens[size - 3].text),
                    .table = is_single ? folded_name(tokens[path - 2].text) : L"",
                    .many_keys = L"SELECT " + column + L" AS orv_key, " +
                                 std::wstring(sql.substr(head, tail - head)) + L"= ANY "};
}

void RowsAhead::expect(std::wstring_view column, std::vector<std::int64_t> keys) {
  Expected& expected = expected_[folded_name(column)];
  expected.places.clear();
  expected.keys.clear();
  for (const std::int64_t key : keys) {
    if (expected.places.emplace(key, expected.keys.size()).second) expected.keys.push_back(key);
  }
}

void RowsAhead::end() noexcept {
  expected_.clear();
  fetched_.clear();
}

void RowsAhead::forget(std::wstring_view table) noexcept {
  std::erase_if(remembered_, [&](const auto& each) { return each.second.table == table; });
}

void RowsAhead::remember(const QueryByKey& query, std::int64_t key,
                         const std::vector<ResultRow>& rows) {
  constexpr std::size_t kMost = 1000;
  Remembered& remembered = remembered_[query.many_keys];
  remembered.table = query.table;
  if (remembered.rows.size() >= kMost) remembered.rows.clear();
  remembered.rows[key] = rows;
}

const std::vector<ResultRow>* RowsAhead::find(const QueryByKey& query, std::int64_t key) {
  if (const auto known = remembered_.find(query.many_keys); known != remembered_.end()) {
    const auto found = known->second.rows.find(key);
    if (found != known->second.rows.end()) return &found->second;
  }
  const auto expected = expected_.find(query.column);
  if (expected == expected_.end()) return nullptr;
  const auto place = expected->second.places.find(key);
  if (place == expected->second.places.end()) return nullptr;
  const auto known = fetched_.find(query.many_keys);
  if (known != fetched_.end()) {
    const auto found = known->second.find(key);
    if (found != known->second.end()) return &found->second;
  }
  Rows rows = fetch(query, expected->second, place->second);
  return &(fetched_[query.many_keys] = std::move(rows)).at(key);
}

RowsAhead::Rows RowsAhead::fetch(const QueryByKey& query, const Expected& expected,
                                 std::size_t first) {
  const std::size_t end = std::min(first + kKeysAtOnce, expected.keys.size());
  Rows rows;
  std::wstring list = L"{";
  for (std::size_t i = first; i < end; ++i) {
    rows[expected.keys[i]];
    if (i > first) list += L',';
    list += std::to_wstring(expected.keys[i]);
  }
  for (ResultRow& row :
       OdbcStatement::rows_of(session_, query.many_keys + L"('" + list + L"}'::integer[])")) {
    const std::int64_t key = row.front().integer;
    row.erase(row.begin());
    rows[key].push_back(std::move(row));
  }
  return rows;
}

}  // namespace modeldb
