#include "modeldb/engine/transactions.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "modeldb/engine/database.h"
#include "modeldb/engine/failure.h"

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
    fail(kInvalidTransaction, L"The change of the model database " + quoted(database_.path()) +
                                  L" was undone, because a transaction that was begun within it "
                                  L"is still open. End it there.");
  }
  keep_innermost();
}

void Transactions::undo(std::size_t depth) noexcept {
  while (levels_.size() > depth) undo_innermost();
}

bool Transactions::can_write() {
  if (is_open()) return true;
  sqlite3_busy_timeout(database_.handle_, 0);
  try {
    start();
    run_quietly("ROLLBACK");
  } catch (...) {
    // What does not last, such as a lock, is told to those who write.
  }
  database_.wait_for_locks();
  return !database_.is_protected_;
}

void Transactions::require_alive() const {
  if (levels_.empty() || !sqlite3_get_autocommit(database_.handle_)) return;
  fail(kInvalidTransaction,
       L"The transaction in the model database " + quoted(database_.path()) +
           L" was undone after an earlier failure, and nothing of it is saved. Roll it back if you "
           L"have not ended it yet; then remove the cause, and try the whole of it again.");
}

void Transactions::forget() noexcept {
  while (is_open()) end_innermost(TransactionEnd::kRolledBack);
  observer_ = nullptr;
}

void Transactions::open(bool is_client) {
  database_.require_open();
  const Level level{.is_client = is_client, .was_changed = database_.is_changed()};
  levels_.reserve(levels_.size() + 1);
  if (levels_.empty()) {
    start();
  } else {
    database_.execute(L"SAVEPOINT level");
  }
  levels_.push_back(level);
}

/// SQLite begins transactions on files that it cannot write, too. So something is written, which
/// makes it open its journal.
void Transactions::start() {
  database_.require_writable();
  // Immediate: another program's lock is met here, not in the middle of the work.
  database_.execute(L"BEGIN IMMEDIATE");
  try {
    database_.set_schema_version(database_.schema_version());
  } catch (...) {
    note_protection();
    run_quietly("ROLLBACK");
    throw;
  }
}

/// What is known of the file refuses statements outside a transaction, too, also those that would
/// find no row to change.
void Transactions::note_protection() const {
  const int result = sqlite3_errcode(database_.handle_) & 0xFF;
  database_.is_protected_ =
      result == SQLITE_CANTOPEN || result == SQLITE_READONLY || result == SQLITE_PERM;
}

void Transactions::keep_innermost() {
  try {
    require_alive();
    database_.execute(levels_.size() == 1 ? L"COMMIT" : L"RELEASE level");
  } catch (...) {
    undo_innermost();
    throw;
  }
  end_innermost(TransactionEnd::kCommitted);
}

void Transactions::undo_innermost() noexcept {
  run_quietly(levels_.size() == 1 ? "ROLLBACK" : "ROLLBACK TO level; RELEASE level");
  if (!levels_.back().was_changed) database_.mark_unchanged();
  end_innermost(TransactionEnd::kRolledBack);
}

void Transactions::end_innermost(TransactionEnd end) noexcept {
  const bool is_client = levels_.back().is_client;
  levels_.pop_back();
  if (is_client && observer_) observer_->on_end(end, levels_.empty());
}

void Transactions::require_ending() const {
  database_.require_open();
  if (client_depth() == 0) {
    fail(kInvalidTransaction, L"No transaction is open in the model database " +
                                  quoted(database_.path()) + L". Begin one first.");
  }
  if (!levels_.back().is_client) {
    fail(kInvalidTransaction, L"A change of the model database " + quoted(database_.path()) +
                                  L" is under way, so that its transaction cannot end now. End it "
                                  L"after the record is saved or deleted.");
  }
}

void Transactions::run_quietly(const char* sql) const noexcept {
  database_.authorizer_.begin(Trust::kHost);
  sqlite3_exec(database_.handle_, sql, nullptr, nullptr, nullptr);
}

}  // namespace modeldb
