#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "modeldb/engine/savepoint.h"
#include "modeldb/store/record.h"
#include "modeldb/store/reverted_rows.h"

namespace modeldb {

/// A notification that is due.
struct Event {
  enum class Type { kSaved, kDeleted };
  Type type;
  long object_type;
  long id;
};

/// What was done beside writing rows and may have to be undone: by the changes that are under way,
/// or by all since a client's transaction began.
struct ChangeLog {
  /// A record that was written under `key` and marked clean, and how it was before.
  struct Touched {
    Record record;
    long key;
    long dirty;
    /// A values text of its row; null when nobody asks for it again.
    std::unique_ptr<const std::wstring> saved;
  };

  /// What an object of the model's own does to take back what it was given.
  using Undo = std::function<void()>;

  int depth = 0;
  /// Outlives the model, whose closing rolls back what is open: the records may be saved again.
  std::shared_ptr<RevertedRows> reverted;
  /// A long transaction has many: they stay where they are when there are more.
  std::deque<std::variant<Touched, Undo>> touched;
  std::vector<Event> events;
  /// What the transaction that is open has saved and deleted so far, for other programs.
  std::vector<Event> written;
  /// Objects are being given back what they had. What they save or delete meanwhile is refused.
  bool is_undoing = false;
  /// Where the open transactions of the client begin in `touched` and in `written`.
  struct Beginning {
    std::size_t touched;
    std::size_t written;
  };
  std::vector<Beginning> transactions;

  void begin_transaction() { transactions.push_back({touched.size(), written.size()}); }
  /// Gives back what the transaction that began last has given, when it is rolled back; forgets it
  /// when nothing can undo it any more.
  void end_transaction(TransactionEnd end, bool outermost) noexcept;

  /// Gives back to the records from `first` on what they had before, the last first, and forgets
  /// them.
  void undo_touches(std::size_t first = 0) noexcept;
  void undo_written(std::size_t first) noexcept {
    if (written.size() > first) written.resize(first, Event{});
  }
};

/// One save or deletion, whole or not at all; one that begins inside another is part of that one.
/// What is not kept at the end of the scope is undone: rows, new keys, dirty flags, notifications.
/// What is kept stays in the log while a client's transaction is open, which may undo it yet.
class Change {
 public:
  Change(ChangeLog& log, Database& database)
      : log_(log),
        touched_before_(log.touched.size()),
        events_before_(log.events.size()),
        written_before_(log.written.size()),
        savepoint_(database) {
    ++log_.depth;
  }
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;
  ~Change();

  /// Raises what the database answers when it cannot keep the rows; then all is undone.
  void keep();

 private:
  ChangeLog& log_;
  std::size_t touched_before_;
  std::size_t events_before_;
  std::size_t written_before_;
  Savepoint savepoint_;
  bool kept_ = false;
};

}  // namespace modeldb
