#include "modeldb/engine/savepoint.h"

namespace modeldb {

Savepoint::Savepoint(Database& database)
    : database_(database), owns_transaction_(!database.in_transaction()) {
  if (owns_transaction_) {
    database_.begin();
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
    database_.commit();
  } else {
    database_.execute(L"RELEASE work");
  }
  released_ = true;
}

void Savepoint::undo() {
  if (owns_transaction_) {
    database_.rollback();
  } else {
    database_.execute(L"ROLLBACK TO work");
    database_.execute(L"RELEASE work");
  }
}

}  // namespace modeldb
