#pragma once

#include "modeldb/engine/database.h"

namespace modeldb {

/// A position in the rows of a query, which moves forward only. Closed until it is opened.
///
/// Every member but close() and is_open() fails with kObjectClosed when the cursor or its database
/// is closed.
class Cursor {
 public:
  /// The line of the model whose rows these are; null until belong_to() tells it.
  [[nodiscard]] const std::shared_ptr<Turns>& turns() const { return turns_; }
  void belong_to(std::shared_ptr<Turns> turns) { turns_ = std::move(turns); }

  /// Takes the query and moves to its first row.
  void open(StatementLease query);
  void close() { query_ = {}; }
  [[nodiscard]] bool is_open() const { return query_ && query_->is_open(); }

  [[nodiscard]] bool is_empty() const;
  [[nodiscard]] bool at_end() const;
  /// Back to the first row; the query is run again when the cursor has left it. Of no rows, there
  /// is no first, which is not an error.
  void move_first();
  /// kNoCurrentRecord: it is at the end already.
  void move_next();
  /// Runs the query again, whatever the position.
  void run_again();

  /// The query, for what does not depend on the row.
  [[nodiscard]] Statement& query() const;
  /// The query, standing on a row. kNoCurrentRecord: the cursor is at the end.
  [[nodiscard]] Statement& row() const;

 private:
  std::shared_ptr<Turns> turns_;
  StatementLease query_;
  bool at_end_ = true;
  bool is_empty_ = true;
  bool has_moved_ = false;
};

}  // namespace modeldb
