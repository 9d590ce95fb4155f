#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "modeldb/engine/transaction_companion.h"
#include "modeldb/engine/transaction_observer.h"

namespace modeldb {

class Database;

/// The transactions of a database, one inside the other: those of clients, and pieces of the model
/// database's own work (Savepoint). The outermost is a transaction of the engine, the others are
/// savepoints in it. They end in the reverse order of their beginning.
class Transactions {
 public:
  explicit Transactions(Database& database) : database_(database) {}
  Transactions(const Transactions&) = delete;
  Transactions& operator=(const Transactions&) = delete;

  // Of clients.

  /// The outermost one fails here, with a sentence, when nothing can be written: later, the
  /// failures of single records would be all that is seen of it. kLocked: another program writes.
  void begin();
  /// kInvalidTransaction: none is open, a piece of work is under way, or the database had to roll
  /// everything back.
  void commit();
  /// kInvalidTransaction: none is open, or a piece of work is under way.
  void rollback();
  /// How many of clients are open.
  [[nodiscard]] int client_depth() const;
  /// From here until all are forgotten, `observer` learns what becomes of those of clients.
  void observe(TransactionObserver& observer) { observer_ = &observer; }

  /// From the next one on until all are forgotten, `companion` takes part in those of the engine.
  void accompany(TransactionCompanion& companion) { companion_ = &companion; }

  // Of pieces of work, by the depth at which they stand.

  [[nodiscard]] std::size_t depth() const { return levels_.size(); }
  [[nodiscard]] bool is_open() const { return !levels_.empty(); }
  /// Begins a piece of work at the present depth.
  void enter() { open(false); }
  /// Keeps the work at that depth. kInvalidTransaction: a client has begun a transaction in it, and
  /// not ended it.
  void keep(std::size_t depth);
  /// Undoes what stands at that depth and within.
  void undo(std::size_t depth) noexcept;

  /// The database is closed, and all of them are rolled back.
  void forget() noexcept;

 private:
  struct Level {
    bool is_client;
    bool was_changed;             // the database, before it
    std::int64_t changes_before;  // of rows
    bool shares_savepoint;        // with the piece of work around it, in which nothing has changed
  };

  void open(bool is_client);
  void open_outermost(bool is_client);
  /// Undoes it when it fails.
  void keep_innermost();
  void undo_innermost() noexcept;
  /// Takes it off, and tells the observer.
  void end_innermost(TransactionEnd end) noexcept;
  /// What a client asks to end must be open, and nothing else under way.
  void require_ending() const;

  Database& database_;
  std::vector<Level> levels_;
  TransactionObserver* observer_ = nullptr;
  TransactionCompanion* companion_ = nullptr;
};

}  // namespace modeldb
