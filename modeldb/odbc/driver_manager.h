#pragma once

// The platform's own header is first: the others need it, and do not include it.
// clang-format off
#include <windows.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
// clang-format on

#include <utility>

namespace modeldb {

/// The functions of the platform's ODBC, by their own names. The module is loaded when a model
/// behind it is opened for the first time: nobody else need have it. Only functions for wide
/// characters are among them; the narrow ones are not there everywhere.
struct DriverManager {
  /// kFeatureNotAvailable, with a sentence: there is no ODBC on this machine.
  static const DriverManager& instance();

#define ORV_ODBC_FUNCTIONS(X) \
  X(SQLAllocHandle)           \
  X(SQLFreeHandle)            \
  X(SQLSetEnvAttr)            \
  X(SQLSetConnectAttrW)       \
  X(SQLDriversW)              \
  X(SQLDriverConnectW)        \
  X(SQLDisconnect)            \
  X(SQLEndTran)               \
  X(SQLGetDiagRecW)           \
  X(SQLSetStmtAttrW)          \
  X(SQLFreeStmt)              \
  X(SQLPrepareW)              \
  X(SQLExecDirectW)           \
  X(SQLExecute)               \
  X(SQLBindParameter)         \
  X(SQLNumResultCols)         \
  X(SQLDescribeColW)          \
  X(SQLColAttributeW)         \
  X(SQLRowCount)              \
  X(SQLBindCol)               \
  X(SQLFetch)                 \
  X(SQLGetData)
#define ORV_ODBC_MEMBER(name) decltype(&::name) name = nullptr;
  ORV_ODBC_FUNCTIONS(ORV_ODBC_MEMBER)
#undef ORV_ODBC_MEMBER

 private:
  DriverManager();
};

/// A handle of ODBC's, freed at the end.
template <SQLSMALLINT kType>
class OdbcHandle {
 public:
  OdbcHandle() = default;
  /// std::bad_alloc: ODBC has none to give.
  explicit OdbcHandle(SQLHANDLE parent);
  OdbcHandle(OdbcHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OdbcHandle() {
    if (handle_) DriverManager::instance().SQLFreeHandle(kType, handle_);
  }

  [[nodiscard]] SQLHANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }

 private:
  SQLHANDLE handle_ = nullptr;
};

using EnvironmentHandle = OdbcHandle<SQL_HANDLE_ENV>;
using ConnectionHandle = OdbcHandle<SQL_HANDLE_DBC>;
using StatementHandle = OdbcHandle<SQL_HANDLE_STMT>;

/// A number as ODBC takes it in the place of a pointer.
inline SQLPOINTER as_pointer(SQLULEN number) {
  return reinterpret_cast<SQLPOINTER>(number);  // NOLINT(performance-no-int-to-ptr)
}

/// Characters as ODBC takes them; it writes none.
inline SQLWCHAR* characters(const wchar_t* text) {
  return const_cast<SQLWCHAR*>(text);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

}  // namespace modeldb
