#include "modeldb/engine/savepoint.h"

namespace modeldb {

Savepoint::Savepoint(Database& database)
    : database_(database),
      owns_transaction_(!database.in_transaction()),
      was_changed_(database.is_changed()) {
  if (owns_transaction_) {
    database_.start_transaction();
  } else {
    database_.execute(L"SAVEPOINT work");
  }
}

Savepoint::~Savepoint() {
  if (released_ || !database_.in_transaction()) return;
  try {
    undo();
  } catch (...) {
    // Only a transaction that is lost as a whole can refuse: there is nothing left to undo.
  }
}

void Savepoint::release() {
  if (owns_transaction_) {
    database_.require_transaction();
    database_.finish_transaction();
  } else {
    database_.execute(L"RELEASE work");
  }
  released_ = true;
}

void Savepoint::undo() {
  if (owns_transaction_) {
    database_.roll_back();
  } else {
    database_.execute(L"ROLLBACK TO work");
    database_.execute(L"RELEASE work");
    if (!was_changed_) database_.mark_unchanged();
  }
}

}  // namespace modeldb
