#include "bench/raw_odbc.h"

#include <array>
#include <vector>

#include "com/error.h"

namespace bench {
namespace {

void check(SQLRETURN result, SQLSMALLINT type, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return;
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 1024> message{};
  SQLINTEGER code = 0;
  SQLGetDiagRecW(type, handle, 1, state.data(), &code, message.data(), message.size(), nullptr);
  com::fail(E_FAIL, L"orv_bench", message.data());
}

SQLWCHAR* characters(const std::wstring& text) { return const_cast<SQLWCHAR*>(text.c_str()); }

SQLPOINTER as_pointer(SQLULEN number) { return reinterpret_cast<SQLPOINTER>(number); }

/// Where a column's value is put in each row.
struct Cell {
  std::array<SQLWCHAR, 256> text;
  double real;
  long integer;
  SQLLEN length;
};

void bind_column(SQLHANDLE statement, SQLUSMALLINT column, Cell& cell) {
  SQLSMALLINT type = 0;
  check(SQLDescribeColW(statement, column, cell.text.data(), cell.text.size(), nullptr, &type,
                        nullptr, nullptr, nullptr),
        SQL_HANDLE_STMT, statement);
  SQLSMALLINT c_type = SQL_C_WCHAR;
  SQLPOINTER place = cell.text.data();
  SQLLEN size = sizeof cell.text;
  if (type == SQL_INTEGER || type == SQL_SMALLINT) {
    c_type = SQL_C_SLONG;
    place = &cell.integer;
    size = sizeof cell.integer;
  } else if (type == SQL_DOUBLE || type == SQL_FLOAT) {
    c_type = SQL_C_DOUBLE;
    place = &cell.real;
    size = sizeof cell.real;
  }
  check(SQLBindCol(statement, column, c_type, place, size, &cell.length), SQL_HANDLE_STMT,
        statement);
}

}  // namespace

// --- The connection ---

RawConnection::RawConnection(const std::wstring& text) {
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
  SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, as_pointer(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_);
  // Nothing but the statements reaches the server: the driver adds no savepoints of its own.
  const std::wstring complete =
      text + L";Protocol=7.4-0;UseServerSidePrepare=1;UseDeclareFetch=0;LFConversion=0";
  check(SQLDriverConnectW(connection_, nullptr, characters(complete), SQL_NTS, nullptr, 0, nullptr,
                          SQL_DRIVER_NOPROMPT),
        SQL_HANDLE_DBC, connection_);
}

RawConnection::~RawConnection() {
  SQLDisconnect(connection_);
  SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

void RawConnection::run(const std::wstring& sql) { RawOdbcStatement(*this, sql).run(); }

void RawConnection::set_automatic(SQLULEN mode) {
  check(SQLSetConnectAttrW(connection_, SQL_ATTR_AUTOCOMMIT, as_pointer(mode), 0), SQL_HANDLE_DBC,
        connection_);
}

void RawConnection::begin() { set_automatic(SQL_AUTOCOMMIT_OFF); }

void RawConnection::commit() {
  check(SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_COMMIT), SQL_HANDLE_DBC, connection_);
  set_automatic(SQL_AUTOCOMMIT_ON);
}

// --- Statements ---

RawOdbcStatement::RawOdbcStatement(const RawConnection& connection, const std::wstring& sql) {
  check(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle(), &handle_), SQL_HANDLE_DBC,
        connection.handle());
  check(SQLPrepareW(handle_, characters(sql), SQL_NTS), SQL_HANDLE_STMT, handle_);
}

void RawOdbcStatement::bind(int parameter, SQLSMALLINT c_type, SQLSMALLINT sql_type, SQLULEN size,
                            const void* value, SQLLEN* length) {
  check(SQLBindParameter(handle_, static_cast<SQLUSMALLINT>(parameter), SQL_PARAM_INPUT, c_type,
                         sql_type, size, 0, const_cast<void*>(value), 0, length),
        SQL_HANDLE_STMT, handle_);
}

void RawOdbcStatement::bind(int parameter, const long& value) {
  bind(parameter, SQL_C_SLONG, SQL_INTEGER, 0, &value, nullptr);
}

void RawOdbcStatement::bind(int parameter, const double& value) {
  bind(parameter, SQL_C_DOUBLE, SQL_DOUBLE, 0, &value, nullptr);
}

void RawOdbcStatement::bind(int parameter, const wchar_t* text, std::size_t room) {
  static SQLLEN up_to_its_end = SQL_NTS;
  bind(parameter, SQL_C_WCHAR, SQL_WLONGVARCHAR, room, text, &up_to_its_end);
}

void RawOdbcStatement::bind_null(int parameter) {
  static SQLLEN null = SQL_NULL_DATA;
  bind(parameter, SQL_C_SLONG, SQL_INTEGER, 0, nullptr, &null);
}

void RawOdbcStatement::run() { check(SQLExecute(handle_), SQL_HANDLE_STMT, handle_); }

long RawOdbcStatement::run_for_number() {
  run();
  check(SQLFetch(handle_), SQL_HANDLE_STMT, handle_);
  long number = 0;
  check(SQLGetData(handle_, 1, SQL_C_SLONG, &number, sizeof number, nullptr), SQL_HANDLE_STMT,
        handle_);
  SQLFreeStmt(handle_, SQL_CLOSE);
  return number;
}

long RawOdbcStatement::run_and_read() {
  run();
  SQLSMALLINT columns = 0;
  SQLNumResultCols(handle_, &columns);
  std::vector<Cell> cells(columns);
  for (SQLSMALLINT i = 0; i < columns; ++i) bind_column(handle_, i + 1, cells[i]);
  long rows = 0;
  for (SQLRETURN result = SQLFetch(handle_); result != SQL_NO_DATA; result = SQLFetch(handle_)) {
    check(result, SQL_HANDLE_STMT, handle_);
    ++rows;
  }
  SQLFreeStmt(handle_, SQL_CLOSE);
  SQLFreeStmt(handle_, SQL_UNBIND);
  return rows;
}

}  // namespace bench
