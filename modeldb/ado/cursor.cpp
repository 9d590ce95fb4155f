#include "modeldb/ado/cursor.h"

#include <utility>

#include "modeldb/base/failure.h"

namespace modeldb {

void Cursor::open(StatementLease query) {
  query_ = std::move(query);
  try {
    run_again();
  } catch (...) {
    close();
    throw;
  }
}

void Cursor::run_again() {
  Statement& statement = query();
  statement.reset();
  at_end_ = is_empty_ = !statement.step();
  has_moved_ = false;
}

bool Cursor::is_empty() const {
  (void)query();
  return is_empty_;
}

bool Cursor::at_end() const {
  (void)query();
  return at_end_;
}

void Cursor::move_first() {
  (void)query();
  if (has_moved_) run_again();
}

void Cursor::move_next() {
  Statement& statement = row();
  has_moved_ = true;
  at_end_ = true;  // also when the step fails
  at_end_ = !statement.step();
}

Statement& Cursor::query() const {
  if (!query_) fail(kObjectClosed, L"The recordset is closed. Open it with a query first.");
  query_->require_open();
  return *query_;
}

Statement& Cursor::row() const {
  Statement& statement = query();
  if (at_end_) {
    fail(kNoCurrentRecord,
         L"The recordset stands on no row: it has none, or was moved past the "
         L"last one. Ask EOF before reading or moving on.");
  }
  return statement;
}

}  // namespace modeldb
