#pragma once

#include <cstdint>
#include <string_view>

#include "modeldb/engine/literal.h"
#include "modeldb/engine/statement.h"

namespace modeldb {

/// What became of a client's text.
struct TextResult {
  StatementLease query;           ///< empty unless the text is a query
  std::int64_t changed_rows = 0;  ///< by a text that is none
};

/// Runs texts of clients, as they reach ADO's objects. Only SELECT, INSERT, UPDATE and DELETE on
/// the model's tables pass (Trust::kRead: SELECT alone), one statement at a time, without
/// parameters; a refused text fails with kPermissionDenied before anything is done. Tables whose
/// names begin with "orv_" are the model database's own and out of reach.
class ClientTexts {
 public:
  explicit ClientTexts(Database& database) : database_(database) {}
  ClientTexts(const ClientTexts&) = delete;
  ClientTexts& operator=(const ClientTexts&) = delete;

  /// How long a text may run that is given no limit of its own.
  [[nodiscard]] Seconds time_limit() const { return time_limit_; }
  void set_time_limit(Seconds limit) { time_limit_ = limit; }

  /// A query comes back with its literals bound, ready for step. Anything else is run at once;
  /// BEGIN, COMMIT and ROLLBACK TRANSACTION are those of the database's transactions.
  TextResult execute(std::wstring_view text, Trust trust, Seconds time_limit);

 private:
  StatementLease prepare_bound(std::wstring_view text, Trust author, Seconds time_limit);

  Database& database_;
  Seconds time_limit_ = kDefaultTimeLimit;
  BoundText bound_;  // the text that was read last; kept for its capacity
};

}  // namespace modeldb
