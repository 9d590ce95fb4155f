#include "modeldb/engine/statement_cache.h"

#include "modeldb/engine/database.h"

namespace modeldb {

StatementLease StatementCache::lease(Database& database, std::wstring_view sql, Trust trust) {
  Statements& statements = statements_[static_cast<int>(trust)];
  const auto cached = statements.find(sql);
  if (cached == statements.end()) {
    make_room(statements);
    auto statement = std::make_unique<Statement>(database, sql, trust);
    const auto added = statements.emplace(sql, std::move(statement)).first;
    return {database.shared_from_this(), *added->second};
  }
  if (cached->second->is_in_use()) {
    return {database.shared_from_this(), std::make_unique<Statement>(database, sql, trust)};
  }
  return {database.shared_from_this(), *cached->second};
}

void StatementCache::make_room(Statements& statements) {
  if (statements.size() < kMaximumSize) return;
  std::erase_if(statements, [](const auto& entry) { return !entry.second->is_in_use(); });
}

}  // namespace modeldb
