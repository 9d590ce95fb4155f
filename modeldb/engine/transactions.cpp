#include "modeldb/engine/transactions.h"

#include <algorithm>
#include <utility>

#include "modeldb/base/failure.h"
#include "modeldb/engine/database.h"

namespace modeldb {

void Transactions::begin() {
  if (observer_) observer_->on_begin();
  try {
    open(true);
  } catch (...) {
    if (observer_) observer_->on_end(TransactionEnd::kRefused, levels_.empty());
    throw;
  }
}

void Transactions::commit() {
  require_ending();
  keep_innermost();
}

void Transactions::rollback() {
  require_ending();
  undo_innermost();
}

int Transactions::client_depth() const {
  return static_cast<int>(std::ranges::count_if(levels_, &Level::is_client));
}

void Transactions::keep(std::size_t depth) {
  database_.require_open();
  if (levels_.size() > depth + 1) {
    undo(depth);
    fail(kInvalidTransaction, L"The change of the model database " + quoted(database_.location()) +
                                  L" was undone, because a transaction that was begun within it "
                                  L"is still open. End it there.");
  }
  keep_innermost();
}

void Transactions::undo(std::size_t depth) noexcept {
  while (levels_.size() > depth) undo_innermost();
}

void Transactions::forget() noexcept {
  while (is_open()) end_innermost(TransactionEnd::kRolledBack);
  observer_ = nullptr;
  companion_ = nullptr;
}

void Transactions::open(bool is_client) {
  database_.require_open();
  const std::int64_t changes = database_.engine().total_changes();
  // The vertex of a new record is saved before anything is written of the record.
  const bool shares = !is_client && levels_.size() > 1 && !levels_.back().is_client &&
                      levels_.back().changes_before == changes;
  const Level level{.is_client = is_client,
                    .was_changed = database_.is_changed(),
                    .changes_before = changes,
                    .shares_savepoint = shares};
  levels_.reserve(levels_.size() + 1);
  if (levels_.empty()) {
    open_outermost(is_client);
  } else if (!shares) {
    database_.engine().begin_savepoint();
  }
  levels_.push_back(level);
}

/// A client who cannot write learns it here, before he parts with what he would write.
void Transactions::open_outermost(bool is_client) {
  database_.engine().begin();
  try {
    if (is_client) database_.engine().require_reachable();
    if (companion_) companion_->on_begin();
  } catch (...) {
    database_.engine().rollback();
    throw;
  }
}

void Transactions::keep_innermost() {
  try {
    if (levels_.size() == 1) {
      if (companion_) companion_->before_commit();
      database_.engine().commit();
    } else if (!levels_.back().shares_savepoint) {
      database_.engine().release_savepoint();
    }
  } catch (...) {
    undo_innermost();
    throw;
  }
  end_innermost(TransactionEnd::kCommitted);
}

void Transactions::undo_innermost() noexcept {
  if (levels_.size() == 1) {
    database_.engine().rollback();
  } else if (levels_.back().shares_savepoint) {
    database_.engine().restart_savepoint();
  } else {
    database_.engine().undo_savepoint();
  }
  if (!levels_.back().was_changed) database_.mark_unchanged();
  end_innermost(TransactionEnd::kRolledBack);
}

void Transactions::end_innermost(TransactionEnd end) noexcept {
  const bool is_client = levels_.back().is_client;
  levels_.pop_back();
  if (levels_.empty() && companion_) companion_->on_end(end == TransactionEnd::kCommitted);
  if (is_client && observer_) observer_->on_end(end, levels_.empty());
}

void Transactions::require_ending() const {
  database_.require_open();
  if (client_depth() == 0) {
    fail(kInvalidTransaction, L"No transaction is open in the model database " +
                                  quoted(database_.location()) + L". Begin one first.");
  }
  if (!levels_.back().is_client) {
    fail(kInvalidTransaction, L"A change of the model database " + quoted(database_.location()) +
                                  L" is under way, so that its transaction cannot end now. End it "
                                  L"after the record is saved or deleted.");
  }
}

}  // namespace modeldb
