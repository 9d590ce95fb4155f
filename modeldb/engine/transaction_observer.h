#pragma once

namespace modeldb {

/// How a transaction of a client ends.
enum class TransactionEnd {
  kRefused,  ///< it could not begin
  kCommitted,
  kRolledBack,  ///< by the client, by a commit that failed, or because the file was closed
};

/// Learns what becomes of the transactions of clients. Inner ones end before those around them.
class TransactionObserver {
 public:
  /// One is about to begin. What this raises refuses it.
  virtual void on_begin() = 0;
  /// The one that began last has ended; `outermost`: nothing is open any more.
  virtual void on_end(TransactionEnd end, bool outermost) noexcept = 0;

 protected:
  ~TransactionObserver() = default;
};

}  // namespace modeldb
