#pragma once

namespace modeldb {

/// Whether records are notified of one by one.
///
/// A collection suspends that for its transaction and resumes it after; when it fails in between it
/// leaves it suspended. So a suspension also ends with the transaction that was open during it.
class EventSwitch {
 public:
  void suspend() {
    suspended_ = true;
    saw_transaction_ = false;
  }
  void resume() { suspended_ = false; }

  /// Asked at every change, with whether the client has a transaction open.
  [[nodiscard]] bool is_suspended(bool in_transaction) {
    if (in_transaction) {
      saw_transaction_ = true;
    } else if (saw_transaction_) {
      suspended_ = false;
    }
    return suspended_;
  }

 private:
  bool suspended_ = false;
  bool saw_transaction_ = false;
};

}  // namespace modeldb
