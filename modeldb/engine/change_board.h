#pragma once

#include <span>
#include <vector>

namespace modeldb {

/// Records of one kind that one batch has saved, or deleted.
struct ChangedRecords {
  bool are_deleted = false;
  long event_type = 0;  ///< the code of their kind in notifications
  std::vector<long> keys = {};
};

/// Where the programs that work on one model tell each other what they have changed.
class ChangeBoard {
 public:
  ChangeBoard() = default;
  ChangeBoard(const ChangeBoard&) = delete;
  ChangeBoard& operator=(const ChangeBoard&) = delete;
  virtual ~ChangeBoard() = default;

  /// Inside the transaction that changes the records: others read it once that is committed.
  virtual void post(std::span<const ChangedRecords> changes) = 0;

  /// From the first call on, read() has what others change.
  virtual void follow() = 0;
  /// What others have committed since follow() or the last call, batch by batch: each once,
  /// whenever it was begun. A transaction that is open anywhere delays those that were begun after
  /// it.
  virtual std::vector<ChangedRecords> read() = 0;
};

}  // namespace modeldb
