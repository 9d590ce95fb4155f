#include "modeldb/odbc/direct_query.h"

#include <array>

namespace modeldb {
namespace {

const DriverManager& odbc() { return DriverManager::instance(); }

Statement::Type type_of(SQLSMALLINT sql_type) {
  switch (sql_type) {
    case SQL_BIT:
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
    case SQL_BIGINT:
      return Statement::Type::kInteger;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
    case SQL_NUMERIC:
    case SQL_DECIMAL:
      return Statement::Type::kReal;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
      return Statement::Type::kBlob;
    default:
      return Statement::Type::kText;
  }
}

}  // namespace

std::vector<DescribedColumn> described_columns(SQLHANDLE statement, SQLRETURN& result) {
  std::vector<DescribedColumn> columns;
  SQLSMALLINT count = 0;
  result = odbc().SQLNumResultCols(statement, &count);
  for (SQLUSMALLINT column = 1; SQL_SUCCEEDED(result) && column <= count; ++column) {
    SQLSMALLINT type = 0;
    std::array<SQLWCHAR, 256> name{};
    result = odbc().SQLDescribeColW(statement, column, name.data(), name.size(), nullptr, &type,
                                    nullptr, nullptr, nullptr);
    columns.push_back({.type = type_of(type), .label = name.data()});
  }
  return columns;
}

void DirectQuery::check(SQLRETURN result, const std::wstring& sql) const {
  if (SQL_SUCCEEDED(result)) return;
  QueryFailure failure{.diagnosis = Diagnosis::of(SQL_HANDLE_STMT, handle()), .sql = sql};
  odbc().SQLFreeStmt(handle(), SQL_CLOSE);
  throw failure;
}

void DirectQuery::limit_time(Seconds limit) {
  odbc().SQLSetStmtAttrW(handle(), SQL_ATTR_QUERY_TIMEOUT, as_pointer(static_cast<SQLULEN>(limit)),
                         0);
}

ResultRows DirectQuery::rows_of(const std::wstring& sql) {
  check(
      odbc().SQLExecDirectW(handle(), characters(sql.c_str()), static_cast<SQLINTEGER>(sql.size())),
      sql);
  SQLRETURN result = SQL_SUCCESS;
  std::vector<Statement::Type> types;
  std::vector<std::wstring> labels;
  for (auto& column : described_columns(handle(), result)) {
    types.push_back(column.type);
    labels.push_back(std::move(column.label));
  }
  check(result, sql);
  ResultRows rows;
  rows.start(types.size());
  rows.set_labels(std::move(labels));
  {
    ResultPlace place(handle(), types);
    for (result = place.fetch(rows); SQL_SUCCEEDED(result);) result = place.fetch(rows);
  }
  if (result != SQL_NO_DATA) check(result, sql);
  odbc().SQLFreeStmt(handle(), SQL_CLOSE);
  return rows;
}

void DirectQuery::run(const std::wstring& sql) {
  const SQLRETURN result =
      odbc().SQLExecDirectW(handle(), characters(sql.c_str()), static_cast<SQLINTEGER>(sql.size()));
  if (result != SQL_NO_DATA) check(result, sql);
  odbc().SQLFreeStmt(handle(), SQL_CLOSE);
}

}  // namespace modeldb
