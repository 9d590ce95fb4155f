#include "modeldb/engine/turns.h"

#include <mutex>
#include <string>

#include "modeldb/base/failure.h"

namespace modeldb {

/// A thread in the line, which ends with the one that came last.
struct Turns::Waiting {
  DWORD thread;
  CONDITION_VARIABLE turn_has_come = CONDITION_VARIABLE_INIT;
  bool has_turn = false;
  Waiting* behind = nullptr;
};

bool Turns::begin(DWORD patience) {
  const DWORD thread = GetCurrentThreadId();
  if (thread_.load(std::memory_order_relaxed) != thread) {
    DWORD nobody = 0;
    // Nobody passes those who wait already.
    if (waiting_.load() != 0 || !thread_.compare_exchange_strong(nobody, thread)) {
      wait(thread, patience);
    }
  }
  return ++depth_ == 1;
}

void Turns::end() noexcept {
  if (--depth_ > 0) return;
  thread_.store(0);
  if (waiting_.load() == 0) return;
  const std::lock_guard lock(line_lock_);
  hand_over();
}

void Turns::hand_over() {
  DWORD nobody = 0;
  if (!line_ || !thread_.compare_exchange_strong(nobody, line_->thread)) return;
  line_->has_turn = true;
  WakeConditionVariable(&line_->turn_has_come);
  line_ = line_->behind;
}

void Turns::wait(DWORD thread, DWORD patience) {
  const std::lock_guard lock(line_lock_);
  Waiting self{thread};
  ++waiting_;
  Waiting** place = &line_;
  while (*place) place = &(*place)->behind;
  *place = &self;
  // The turn may have ended before anybody was seen waiting.
  hand_over();
  const ULONGLONG start = GetTickCount64();
  while (!self.has_turn) {
    const ULONGLONG waited = GetTickCount64() - start;
    if (patience != INFINITE && waited >= patience) break;
    const DWORD left = patience == INFINITE ? INFINITE : patience - static_cast<DWORD>(waited);
    line_lock_.wait(self.turn_has_come, left);
  }
  --waiting_;
  if (self.has_turn) return;
  for (place = &line_; *place != &self; place = &(*place)->behind) {
  }
  *place = self.behind;
  fail(kLocked, L"The model is in use by another thread, whose call did not end for " +
                    std::to_wstring(patience / 1000) +
                    L" seconds. Try again later, or let each thread open the model for itself.");
}

}  // namespace modeldb
