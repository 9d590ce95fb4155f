#pragma once

#include <vector>

#include "modeldb/engine/savepoint.h"
#include "modeldb/store/record.h"

namespace modeldb {

/// A notification that is due.
struct Event {
  enum class Type { kSaved, kDeleted };
  Type type;
  long object_type;
  long id;
};

/// What the changes that are under way have done so far beside writing rows.
struct ChangeLog {
  /// A record that was given a key or marked clean, and how it was before.
  struct Touched {
    Record record;
    long dirty;
  };

  int depth = 0;
  std::vector<Touched> touched;
  std::vector<Event> events;
};

/// One save or deletion, whole or not at all; one that begins inside another is part of that one.
/// What is not kept at the end of the scope is undone: rows, new keys, dirty flags, notifications.
class Change {
 public:
  Change(ChangeLog& log, Database& database)
      : log_(log),
        touched_before_(log.touched.size()),
        events_before_(log.events.size()),
        savepoint_(database) {
    ++log_.depth;
  }
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;
  ~Change();

  /// Raises what the database answers when it cannot keep the rows; then all is undone.
  void keep();

 private:
  void undo_touches() noexcept;

  ChangeLog& log_;
  std::size_t touched_before_;
  std::size_t events_before_;
  Savepoint savepoint_;
  bool kept_ = false;
};

}  // namespace modeldb
