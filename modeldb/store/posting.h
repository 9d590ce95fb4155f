#pragma once

#include "modeldb/engine/database.h"
#include "modeldb/engine/transaction_companion.h"
#include "modeldb/store/change_log.h"

namespace modeldb {

/// Posts what each transaction has saved and deleted, for the other programs on the model.
class Posting final : public TransactionCompanion {
 public:
  Posting(ChangeBoard& board, ChangeLog& log) : board_(board), log_(log) {}

  void on_begin() override { log_.written.clear(); }
  void before_commit() override;
  void on_end(bool) noexcept override { log_.written.clear(); }

 private:
  ChangeBoard& board_;
  ChangeLog& log_;
};

}  // namespace modeldb
