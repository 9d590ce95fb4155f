#include "modeldb/odbc/rows_ahead.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "modeldb/engine/tokeniser.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/row_stream.h"
#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

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
  const auto tail = static_cast<std::size_t>(tokens[path].text.data() - sql.data());
  const bool is_single = is_word(tokens[path - 3], L"from");
  return QueryByKey{.column = folded_name(tokens[size - 3].text),
                    .table = is_single ? folded_name(tokens[path - 2].text) : std::wstring(),
                    .path = column,
                    .select = L"SELECT " + column + L" AS orv_key, " +
                              std::wstring(sql.substr(head, tail - head))};
}

// --- Rows by key ---

KeyedRows::KeyedRows(std::int64_t key, ResultRows rows)
    : rows_(std::move(rows)),
      keys_{key},
      begins_{0, static_cast<std::uint32_t>(rows_.count())},
      order_(rows_.count()) {
  std::iota(order_.begin(), order_.end(), 0U);
}

KeyedRows::KeyedRows(Keys keys, ResultRows rows, KeySpan complete)
    : rows_(std::move(rows)),
      first_column_(1),
      keys_(std::move(keys)),
      complete_(complete),
      order_(rows_.count()) {
  std::iota(order_.begin(), order_.end(), 0U);
  const auto key_of = [&](std::uint32_t row) { return rows_.integer(row, 0); };
  if (!std::ranges::is_sorted(order_, {}, key_of)) std::ranges::stable_sort(order_, {}, key_of);
  begins_.reserve(keys_.size() + 1);
  std::size_t row = 0;
  std::size_t kept = 0;
  for (const std::int64_t key : keys_) {
    while (row < order_.size() && key_of(order_[row]) < key) ++row;
    begins_.push_back(static_cast<std::uint32_t>(kept));
    while (row < order_.size() && key_of(order_[row]) == key) order_[kept++] = order_[row++];
  }
  begins_.push_back(static_cast<std::uint32_t>(kept));
}

std::optional<KeyedRows::Range> KeyedRows::find(std::int64_t key) {
  std::size_t place = next_;
  if (place >= keys_.size() || keys_[place] != key) {
    const auto found = std::ranges::lower_bound(keys_, key);
    if (found == keys_.end() || *found != key) {
      if (key < complete_.first || key > complete_.last) return {};
      return Range{0, 0};
    }
    place = static_cast<std::size_t>(found - keys_.begin());
  }
  next_ = place + 1;
  return Range{begins_[place], begins_[place + 1]};
}

// --- Rows of a query ---

RowsOfQuery::RowsOfQuery(RowsAhead& ahead, QueryByKey query)
    : ahead_(ahead), query_(std::move(query)) {
  ahead_.join(*this);
}

RowsOfQuery::~RowsOfQuery() { ahead_.leave(*this); }

RowsOfQuery::Found RowsOfQuery::find(std::int64_t key) {
  if (const auto known = remembered_.find(key); known != remembered_.end()) {
    return {known->second, *known->second->find(key)};
  }
  if (fetched_) {
    if (const auto range = fetched_->find(key)) {
      reach_.note_use();
      return {fetched_, *range};
    }
  }
  if (!expected_ || !std::ranges::binary_search(*expected_, key)) return {};
  is_asked_ = true;
  fetched_ =
      std::make_shared<KeyedRows>(*expected_, ahead_.session().rows_of(text_for(*expected_)));
  return {fetched_, *fetched_->find(key)};
}

std::wstring RowsOfQuery::text_for(const Keys& keys) const {
  return query_.select + condition_on(query_.path, keys);
}

void RowsOfQuery::take(std::shared_ptr<KeyedRows> rows) { fetched_ = std::move(rows); }

RowsOfQuery::Found RowsOfQuery::fetch_on(std::int64_t key) {
  const std::size_t count = reach_.next(key, ahead_.order_of(query_.column));
  ResultRows rows = ahead_.session().rows_of(query_.select + reach_.condition(query_.path));
  if (!reach_.listed().empty()) {
    fetched_ = std::make_shared<KeyedRows>(reach_.listed(), std::move(rows));
    return find(key);
  }
  Keys keys(rows.count());
  for (std::size_t row = 0; row < keys.size(); ++row) keys[row] = rows.integer(row, 0);
  // As far as the last of them, or all of the table.
  KeySpan complete{key, keys.size() < count ? INT64_MAX : keys.back()};
  if (reach_.is_downward()) {
    complete = {keys.size() < count ? INT64_MIN : keys.back(), key};
    std::ranges::reverse(keys);
  }
  fetched_ = std::make_shared<KeyedRows>(std::move(keys), std::move(rows), complete);
  return find(key);
}

void RowsOfQuery::remember(std::int64_t key, std::shared_ptr<KeyedRows> rows) {
  constexpr std::size_t kMost = 1000;
  if (remembered_.size() >= kMost) remembered_.clear();
  remembered_[key] = std::move(rows);
}

void RowsOfQuery::expect(std::shared_ptr<const Keys> keys) {
  expected_ = std::move(keys);
  if (!expected_) is_asked_ = false;
  fetched_.reset();
}

void RowsOfQuery::forget() noexcept {
  fetched_.reset();
  remembered_.clear();
  reach_.forget();
}

void RowsOfQuery::reset() noexcept {
  forget();
  reach_ = {};
}

// --- Of all queries ---

void RowsAhead::join(RowsOfQuery& query) {
  queries_.insert(&query);
  const auto known = expected_.find(query.query().column);
  if (known != expected_.end()) query.expect(known->second);
}

void RowsAhead::leave(RowsOfQuery& query) noexcept {
  queries_.erase(&query);
  if (session_.stream()) session_.stream()->forget_ahead(query);
}

void RowsAhead::expect(Statement& query, std::wstring_view subject,
                       std::span<const std::wstring_view> columns) {
  std::vector<RowStream::KeyColumn> keys;
  for (const std::wstring_view column : columns) {
    const auto place = static_cast<std::size_t>(query.columns().find(column));
    keys.push_back({.name = folded_name(column), .place = place});
  }
  dynamic_cast<OdbcStatement&>(query).stream(std::move(keys), subject);
}

void RowsAhead::expect(const std::wstring& column, const std::shared_ptr<const Keys>& keys) {
  for (RowsOfQuery* const each : queries_) {
    if (each->query().column == column) each->expect(keys);
  }
  expected_[column] = keys;
}

std::vector<RowsOfQuery*> RowsAhead::asked_for(std::wstring_view column) const {
  std::vector<RowsOfQuery*> found;
  for (RowsOfQuery* const each : queries_) {
    if (each->query().column == column && each->is_asked()) found.push_back(each);
  }
  return found;
}

void RowsAhead::end() noexcept {
  for (RowsOfQuery* const each : queries_) each->expect(nullptr);
  expected_.clear();
}

void RowsAhead::forget() noexcept {
  if (session_.stream()) session_.stream()->forget_ahead();
  for (RowsOfQuery* const each : queries_) each->forget();
}

void RowsAhead::reset() noexcept {
  if (session_.stream()) session_.stream()->forget_ahead();
  for (RowsOfQuery* const each : queries_) each->reset();
}

void RowsAhead::forget_beside(std::wstring_view table, std::wstring_view column) noexcept {
  for (RowsOfQuery* const each : queries_) {
    if (each->query().table == table && each->query().column != column) each->forget();
  }
}

void RowsAhead::forget(std::wstring_view table) noexcept {
  if (session_.stream()) session_.stream()->forget_ahead();
  for (RowsOfQuery* const each : queries_) {
    if (each->query().table == table) each->forget();
  }
}

}  // namespace modeldb
