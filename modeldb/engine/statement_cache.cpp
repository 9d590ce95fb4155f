#include "modeldb/engine/statement_cache.h"

#include <utility>

#include "modeldb/engine/database.h"

namespace modeldb {
namespace {

std::size_t size_of(std::wstring_view sql, const Statement& statement) {
  return sql.size() * sizeof(wchar_t) + statement.memory();
}

}  // namespace

StatementLease StatementCache::lease(Database& database, const FixedText& sql) {
  if (places_.size() <= sql.number()) places_.resize(sql.number() + 1);
  return lease(database, sql.text(), Trust::kHost, places_[sql.number()]);
}

StatementLease StatementCache::lease(Database& database, std::wstring_view sql, Trust trust,
                                     Place& place) {
  if (place.statement_ && place.times_forgotten_ == times_forgotten_ &&
      !place.statement_->is_in_use()) {
    return {database.shared_from_this(), *place.statement_};
  }
  StatementLease found = lease(database, sql, trust);
  if (!found.is_own()) {
    place.statement_ = &*found;
    place.times_forgotten_ = times_forgotten_;
  }
  return found;
}

StatementLease StatementCache::lease(Database& database, std::wstring_view sql, Trust trust) {
  Statements& statements = statements_[static_cast<int>(trust)];
  const auto cached = statements.find(sql);
  if (cached != statements.end() && !cached->second->is_in_use()) {
    return {database.shared_from_this(), *cached->second};
  }
  auto statement = database.engine().prepare(sql, trust);
  const std::size_t size = size_of(sql, *statement);
  if (cached != statements.end() || size > kMaximumOfOne) {
    return {database.shared_from_this(), std::move(statement)};
  }
  make_room(size);
  const auto added = statements.emplace(sql, std::move(statement)).first;
  size_ += size;
  return {database.shared_from_this(), *added->second};
}

/// Forgets every statement that is not in use when there is no room for one more of that size.
void StatementCache::make_room(std::size_t size) {
  if (size_ + size <= kMaximumSize) return;
  size_ = 0;
  ++times_forgotten_;
  for (Statements& statements : statements_) {
    std::erase_if(statements, [](const auto& entry) { return !entry.second->is_in_use(); });
    for (const auto& [sql, statement] : statements) size_ += size_of(sql, *statement);
  }
}

}  // namespace modeldb
