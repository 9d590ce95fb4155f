#pragma once

// The platform's own header is first: the others need it, and do not include it.
// clang-format off
#include <windows.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
// clang-format on

#include <cstddef>
#include <string>

namespace bench {

/// ODBC used directly, without any objects.
class RawConnection {
 public:
  /// Throws com::Error with the server's message when it refuses anything here or below.
  explicit RawConnection(const std::wstring& text);
  RawConnection(const RawConnection&) = delete;
  RawConnection& operator=(const RawConnection&) = delete;
  ~RawConnection();

  /// Runs a statement that gives no rows.
  void run(const std::wstring& sql);

  // A transaction, which begins with its first statement.
  void begin();
  void commit();

  [[nodiscard]] SQLHANDLE handle() const { return connection_; }

 private:
  void set_automatic(SQLULEN mode);

  SQLHANDLE environment_ = nullptr;
  SQLHANDLE connection_ = nullptr;
};

/// A statement that is prepared once. What is bound is read, or written, where it stands, whenever
/// the statement runs or gives a row.
class RawOdbcStatement {
 public:
  RawOdbcStatement(const RawConnection& connection, const std::wstring& sql);
  RawOdbcStatement(const RawOdbcStatement&) = delete;
  RawOdbcStatement& operator=(const RawOdbcStatement&) = delete;
  ~RawOdbcStatement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }

  void bind(int parameter, const long& value);
  void bind(int parameter, const double& value);
  /// A text up to its NUL.
  void bind(int parameter, const wchar_t* text, std::size_t room);
  void bind_null(int parameter);

  void run();
  /// Runs it; the whole number that its only row consists of.
  long run_for_number();
  /// Runs it and reads all columns of all rows; how many there were.
  long run_and_read();

 private:
  void bind(int parameter, SQLSMALLINT c_type, SQLSMALLINT sql_type, SQLULEN size,
            const void* value, SQLLEN* length);

  SQLHANDLE handle_ = nullptr;
};

}  // namespace bench
