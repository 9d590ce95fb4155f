#include "modeldb/odbc/driver_manager.h"

#include <new>

#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

[[noreturn]] void fail_without_odbc() {
  fail(
      kFeatureNotAvailable,
      L"There is no ODBC on this machine, through which the model would be reached. Install it "
      L"with "
      L"PostgreSQL's driver (under Wine: unixodbc and odbc-postgresql), and open the model again.");
}

}  // namespace

const DriverManager& DriverManager::instance() {
  static const DriverManager manager;
  return manager;
}

DriverManager::DriverManager() {
  auto* const module = LoadLibraryW(L"odbc32.dll");
  if (!module) fail_without_odbc();
#define ORV_ODBC_LOAD(function)                                    \
  function = reinterpret_cast<decltype(function)>(                 \
      reinterpret_cast<void*>(GetProcAddress(module, #function))); \
  if (!function) fail_without_odbc();
  ORV_ODBC_FUNCTIONS(ORV_ODBC_LOAD)
#undef ORV_ODBC_LOAD
}

template <SQLSMALLINT kType>
OdbcHandle<kType>::OdbcHandle(SQLHANDLE parent) {
  const SQLRETURN result =
      DriverManager::instance().SQLAllocHandle(kType, parent ? parent : SQL_NULL_HANDLE, &handle_);
  if (SQL_SUCCEEDED(result)) return;
  handle_ = nullptr;
  // Wine has the functions without the library that does the work.
  if (kType == SQL_HANDLE_ENV) fail_without_odbc();
  throw std::bad_alloc();
}

template class OdbcHandle<SQL_HANDLE_ENV>;
template class OdbcHandle<SQL_HANDLE_DBC>;
template class OdbcHandle<SQL_HANDLE_STMT>;

}  // namespace modeldb
