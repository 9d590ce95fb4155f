#pragma once

#include <string>
#include <vector>

#include "modeldb/odbc/diagnosis.h"
#include "modeldb/odbc/driver_manager.h"
#include "modeldb/odbc/result_rows.h"

namespace modeldb {

/// A query that the server, or the driver, did not answer.
struct QueryFailure {
  Diagnosis diagnosis;
  std::wstring sql;
};

/// Queries of the engine's own without parameters, which run unprepared: that takes one way to the
/// server and not two. It knows nothing but its handle, so that it may run in any thread.
class DirectQuery {
 public:
  explicit DirectQuery(StatementHandle handle) : handle_(std::move(handle)) {}

  /// All rows of a query. Throws QueryFailure.
  [[nodiscard]] ResultRows rows_of(const std::wstring& sql);
  /// Runs a text that gives none. Throws QueryFailure.
  void run(const std::wstring& sql);
  /// For all that runs on it from now on; 0 for no limit.
  void limit_time(Seconds limit);

  [[nodiscard]] SQLHANDLE handle() const { return handle_.get(); }

 private:
  void check(SQLRETURN result, const std::wstring& sql) const;

  StatementHandle handle_;
};

/// A column of a result as ODBC describes it.
struct DescribedColumn {
  Statement::Type type;
  std::wstring label;
};

/// Those of a statement that was prepared or has run; what the last of the calls answered is in
/// `result`.
std::vector<DescribedColumn> described_columns(SQLHANDLE statement, SQLRETURN& result);

}  // namespace modeldb
