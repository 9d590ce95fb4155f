#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "modeldb/engine/change_board.h"
#include "modeldb/odbc/session.h"

namespace modeldb {

/// The table orv_changes: a row for each kind of record that a transaction has saved or deleted,
/// with the transaction's number. The driver delivers no notifications, so that it has to be asked.
class PostedChanges final : public ChangeBoard {
 public:
  explicit PostedChanges(Session& session) : session_(session) {}

  static void make_table(Session& session);
  /// Takes away what everybody who cared has read.
  void drop_old();

  void post(std::span<const ChangedRecords> changes) override;
  void follow() override;
  std::vector<ChangedRecords> read() override;

 private:
  Session& session_;
  const std::int64_t author_ = new_author();
  std::optional<std::int64_t> read_up_to_;

  /// A number that no other program has.
  static std::int64_t new_author();
};

}  // namespace modeldb
