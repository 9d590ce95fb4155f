#pragma once

#include <optional>

namespace modeldb {

/// Whether records are notified of one by one.
///
/// A collection suspends that for its transaction and resumes it after; when it fails in between it
/// leaves it suspended. So a suspension also ends when a transaction ends, or fails to begin.
/// `ended` is Database::ended_transactions() at the time.
class EventSwitch {
 public:
  void suspend(long ended) { suspended_at_ = ended; }
  void resume() { suspended_at_.reset(); }

  [[nodiscard]] bool is_suspended(long ended) const { return suspended_at_ == ended; }

 private:
  std::optional<long> suspended_at_;
};

}  // namespace modeldb
