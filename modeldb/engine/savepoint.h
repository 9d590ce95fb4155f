#pragma once

#include <cstddef>

#include "modeldb/engine/database.h"

namespace modeldb {

/// A piece of work that happens whole or not at all, inside the open transaction or, when none is
/// open, in one of its own. What is not released is undone at the end of the scope.
class Savepoint {
 public:
  explicit Savepoint(Database& database)
      : transactions_(database.transactions()), depth_(transactions_.depth()) {
    transactions_.enter();
  }
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;
  ~Savepoint() {
    // Closing the database has undone all.
    if (!released_) transactions_.undo(depth_);
  }

  /// Whether the work is a transaction of its own.
  [[nodiscard]] bool owns_transaction() const { return depth_ == 0; }

  /// Keeps the work: it becomes part of the open transaction, or is committed.
  void release() {
    transactions_.keep(depth_);
    released_ = true;
  }

 private:
  Transactions& transactions_;
  std::size_t depth_;
  bool released_ = false;
};

}  // namespace modeldb
