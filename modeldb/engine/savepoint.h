#pragma once

#include "modeldb/engine/database.h"

namespace modeldb {

/// A piece of work that happens whole or not at all, inside the open transaction or, when none is
/// open, in one of its own. What is not released is undone at the end of the scope.
class Savepoint {
 public:
  explicit Savepoint(Database& database);
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;
  ~Savepoint();

  /// Whether the work is a transaction of its own.
  [[nodiscard]] bool owns_transaction() const { return owns_transaction_; }

  /// Keeps the work: it becomes part of the open transaction, or is committed.
  void release();

 private:
  void undo();

  Database& database_;
  bool owns_transaction_;
  bool was_changed_;
  bool released_ = false;
};

}  // namespace modeldb
