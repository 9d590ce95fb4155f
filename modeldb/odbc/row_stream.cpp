#include "modeldb/odbc/row_stream.h"

#include <algorithm>
#include <utility>

#include "modeldb/odbc/session.h"

namespace modeldb {
namespace {

/// Rows that come at once: enough to make the way count for little, and few enough for the first
/// of them to be there soon. With 1,500 and with 10,000 loading took some hundredths longer.
constexpr std::size_t kRowsAtOnce = 3500;

/// More than there are keys.
constexpr std::size_t kAllRows = 0x7FFF'FFFF;

std::shared_ptr<const Keys> keys_in(const ResultRows& rows, std::size_t column) {
  Keys keys(rows.count());
  for (std::size_t row = 0; row < keys.size(); ++row) keys[row] = rows.integer(row, column);
  if (!std::ranges::is_sorted(keys)) std::ranges::sort(keys);
  keys.erase(std::ranges::unique(keys).begin(), keys.end());
  return std::make_shared<const Keys>(std::move(keys));
}

}  // namespace

RowStream::RowStream(Session& session, Query query, std::vector<KeyColumn> columns)
    : session_(session),
      columns_(std::move(columns)),
      cursor_(session.new_cursor_name()),
      runner_(session.direct_query()) {
  for (const KeyColumn& column : columns_) session_.rows_ahead().order_of(column.name).begin();
  query.runner.limit_time(query.limit);
  runner_->limit_time(query.limit);
  session_.begin_reading(*this);
  try {
    query.runner.run(L"DECLARE " + cursor_ + L" NO SCROLL CURSOR FOR " + query.text);
  } catch (...) {
    session_.end_reading();
    session_.leave(*this);
    throw;
  }
  is_open_ = true;
}

RowStream::~RowStream() {
  for (const KeyColumn& column : columns_) session_.rows_ahead().order_of(column.name).end();
  close();
  session_.leave(*this);
}

void RowStream::abandon() noexcept {
  is_open_ = false;
  next_.reset();
  rest_.reset();
  runner_.reset();
}

void RowStream::close() noexcept {
  if (!std::exchange(is_open_, false)) return;
  if (session_.is_in_transaction()) session_.run_quietly((L"CLOSE " + cursor_).c_str());
  session_.end_reading();
}

ResultRows RowStream::next() {
  session_.wait_for_background();
  if (!next_) next_ = std::exchange(rest_, std::nullopt);
  if (!next_) {
    if (is_complete_) return {};
    fetch(kRowsAtOnce, next_.emplace());
  }
  Batch batch = *std::exchange(next_, std::nullopt);
  if (batch.failure) std::rethrow_exception(batch.failure);
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    session_.rows_ahead().expect(columns_[column].name, batch.keys[column]);
  }
  for (Ahead& ahead : batch.ahead) ahead.query->take(std::move(ahead.rows));
  for (const KeyColumn& column : columns_) {
    LoadedOrder& order = session_.rows_ahead().order_of(column.name);
    for (std::size_t row = 0; row < batch.rows.count(); ++row) {
      order.add(batch.rows.integer(row, column.place));
    }
  }
  return std::move(batch.rows);
}

void RowStream::go_on() {
  if (!is_open_ || next_) return;
  if (is_complete_) return close();
  session_.wait_for_background();
  next_.emplace().ahead = wanted();
  session_.background().start([this] { fetch(kRowsAtOnce, *next_); });
}

std::vector<RowStream::Ahead> RowStream::wanted() const {
  std::vector<Ahead> wanted;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    for (RowsOfQuery* const query : session_.rows_ahead().asked_for(columns_[column].name)) {
      wanted.push_back({.query = query, .column = column, .rows = {}});
    }
  }
  return wanted;
}

void RowStream::fetch(std::size_t count, Batch& batch) noexcept {
  try {
    fetch_all(count, batch);
  } catch (...) {
    batch.failure = std::current_exception();
    is_complete_ = true;
  }
}

void RowStream::fetch_all(std::size_t count, Batch& batch) {
  batch.rows = runner_->rows_of(L"FETCH " + std::to_wstring(count) + L" FROM " + cursor_);
  is_complete_ = batch.rows.count() < count;
  for (const KeyColumn& column : columns_) batch.keys.push_back(keys_in(batch.rows, column.place));
  for (Ahead& ahead : batch.ahead) {
    const auto& keys = batch.keys[ahead.column];
    if (keys->empty()) continue;
    ahead.rows = std::make_shared<KeyedRows>(*keys, runner_->rows_of(ahead.query->text_for(*keys)));
  }
}

void RowStream::fetch_rest() noexcept {
  session_.wait_for_background();
  if (is_open_ && !is_complete_) fetch(kAllRows, rest_.emplace());
  close();
}

void RowStream::forget_ahead() noexcept {
  session_.wait_for_background();
  if (next_) next_->ahead.clear();
}

void RowStream::forget_ahead(const RowsOfQuery& query) noexcept {
  session_.wait_for_background();
  if (next_) std::erase_if(next_->ahead, [&](const Ahead& each) { return each.query == &query; });
}

}  // namespace modeldb
