#pragma once

namespace modeldb {

/// Takes part in every transaction of the file, the outermost ones, and may write along.
class TransactionCompanion {
 public:
  /// One has begun. What this raises ends it.
  virtual void on_begin() = 0;
  /// All that belongs to it is done. What this raises undoes it.
  virtual void before_commit() = 0;
  /// It was kept or undone.
  virtual void on_end(bool is_kept) noexcept = 0;

 protected:
  ~TransactionCompanion() = default;
};

}  // namespace modeldb
