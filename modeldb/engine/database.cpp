#include "modeldb/engine/database.h"

namespace modeldb {

void Database::close() {
  if (!is_open()) return;
  engine_->close();
  transactions_.forget();
}

void Database::discard() {
  engine_->discard();
  transactions_.forget();
}

void Database::require_open() const {
  if (!is_open()) fail_as_closed(location());
}

bool Database::is_read_only() {
  require_open();
  return engine_->is_read_only();
}

}  // namespace modeldb
