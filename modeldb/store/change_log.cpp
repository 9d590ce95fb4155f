#include "modeldb/store/change_log.h"

#include <utility>

#include "com/error.h"

namespace modeldb {
namespace {

void undo(ChangeLog&, const ChangeLog::Undo& undo) { undo(); }

void undo(ChangeLog& log, const ChangeLog::Touched& touched) {
  const Record& record = touched.record;
  // A key that the client has put in place of the new one meanwhile is the client's.
  if (record.id() == 0 && record.current_id() == touched.key) record.set_id(0);
  record.set_dirty(touched.dirty);
  if (touched.saved) log.reverted->add(record, *touched.saved);
}

}  // namespace

void ChangeLog::undo_touches(std::size_t first) noexcept {
  const bool outer = std::exchange(is_undoing, true);
  while (touched.size() > first) {
    // Taken out before its object is called, which may close the model and so come here again.
    const auto last = std::move(touched.back());
    touched.pop_back();
    try {
      std::visit([this](const auto& touch) { undo(*this, touch); }, last);
    } catch (...) {
      // The failure that led here is the one to report.
    }
  }
  is_undoing = outer;
}

void ChangeLog::end_transaction(TransactionEnd end, bool outermost) noexcept {
  const Beginning first = transactions.back();
  transactions.pop_back();
  if (end == TransactionEnd::kRolledBack) {
    undo_touches(first.touched);
    undo_written(first.written);
  }
  if (end == TransactionEnd::kCommitted && outermost) touched.clear();
}

Change::~Change() {
  if (!kept_) {
    log_.events.resize(events_before_, Event{});
    log_.undo_touches(touched_before_);
    log_.undo_written(written_before_);
  }
  if (--log_.depth == 0 && savepoint_.owns_transaction()) log_.touched.clear();
}

void Change::keep() {
  savepoint_.release();
  kept_ = true;
}

}  // namespace modeldb
