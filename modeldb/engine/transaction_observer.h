#pragma once

namespace modeldb {

/// What becomes of a transaction that a client asks for.
enum class TransactionEvent {
  kRefused,  ///< it could not begin
  kCommitted,
  kRolledBack,  ///< by the client, by a commit that failed, or because the file was closed
};

/// Learns what becomes of the transactions of clients.
class TransactionObserver {
 public:
  virtual void on_transaction(TransactionEvent event) noexcept = 0;

 protected:
  ~TransactionObserver() = default;
};

}  // namespace modeldb
