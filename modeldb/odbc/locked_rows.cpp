#include "modeldb/odbc/locked_rows.h"

#include <utility>

#include "com/error.h"
#include "modeldb/odbc/odbc_statement.h"
#include "modeldb/odbc/session.h"

namespace modeldb {

LockedRows::LockedRows(Session& session, std::wstring table, std::wstring columns, std::wstring key,
                       bool only_changed)
    : session_(session),
      table_(std::move(table)),
      columns_(std::move(columns)),
      key_(std::move(key)),
      lock_(only_changed ? L" FOR NO KEY UPDATE SKIP LOCKED" : L" FOR UPDATE SKIP LOCKED") {}

bool LockedRows::reach(std::int64_t key) {
  if (places_.contains(key)) return true;
  if (changed_.contains(key)) return false;
  clear();
  if (reach_.next(key, session_.rows_ahead().order_of(folded_name(key_))) == 1) return false;
  try {
    lock();
  } catch (const com::Error&) {
    // The row's own statement tells what is wrong.
    forget();
  }
  return places_.contains(key);
}

void LockedRows::lock() {
  rows_ = session_.rows_of(L"SELECT " + columns_ + L" FROM " + table_ + L" WHERE " +
                           reach_.condition(key_) + lock_);
  for (std::size_t row = 0; row < rows_.count(); ++row) {
    const std::int64_t each = rows_.integer(row, 0);
    if (changed_.contains(each)) continue;
    places_.emplace(each, row);
    keys_ += (keys_.empty() ? L"" : L",") + std::to_wstring(each);
  }
}

std::optional<std::int64_t> LockedRows::links(const std::wstring& link_table, std::int64_t key) {
  if (keys_.empty()) return {};
  auto known = links_.find(link_table);
  if (known == links_.end()) {
    // Those without links, too.
    const ResultRows counted = session_.rows_of(
        L"SELECT orv_key, count(" + link_table + L"." + key_ + L") FROM unnest('{" + keys_ +
        L"}'::integer[]) AS orv_keys (orv_key) LEFT JOIN " + link_table + L" ON " + link_table +
        L"." + key_ + L" = orv_key GROUP BY 1");
    Counts counts;
    for (std::size_t row = 0; row < counted.count(); ++row) {
      counts.emplace(counted.integer(row, 0), counted.integer(row, 1));
    }
    known = links_.emplace(link_table, std::move(counts)).first;
  }
  const auto found = known->second.find(key);
  if (found == known->second.end()) return {};
  return found->second;
}

void LockedRows::take(std::int64_t key) {
  places_.erase(key);
  changed_.insert(key);
  reach_.note_use();
}

void LockedRows::take_links(const std::wstring& link_table, std::int64_t key) {
  links_[link_table].erase(key);
  changed_.insert(key);
}

void LockedRows::clear() noexcept {
  rows_ = {};
  places_.clear();
  keys_.clear();
  links_.clear();
}

void LockedRows::forget() noexcept {
  clear();
  reach_.forget();
}

void LockedRows::lose() noexcept {
  forget();
  reach_.shrink();
}

void LockedRows::reset() noexcept {
  forget();
  changed_.clear();
  reach_ = {};
}

}  // namespace modeldb
