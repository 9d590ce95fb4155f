#include "modeldb/store/change_log.h"

#include "com/error.h"

namespace modeldb {
namespace {

void undo(const ChangeLog::Touched& touched) {
  if (touched.record.id() == 0) touched.record.set_id(0);
  touched.record.set_dirty(touched.dirty);
}

}  // namespace

Change::~Change() {
  if (!kept_) undo_touches();
  if (--log_.depth == 0) log_.touched.clear();
}

void Change::keep() {
  savepoint_.release();
  kept_ = true;
}

void Change::undo_touches() noexcept {
  log_.events.resize(events_before_, Event{});
  while (log_.touched.size() > touched_before_) {
    try {
      undo(log_.touched.back());
    } catch (const com::Error&) {
      // The failure that led here is the one to report.
    }
    log_.touched.pop_back();
  }
}

}  // namespace modeldb
