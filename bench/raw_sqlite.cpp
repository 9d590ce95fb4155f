#include "bench/raw_sqlite.h"

#include <iterator>

namespace bench {
namespace {

void check(int result) {
  if (result != SQLITE_OK && result != SQLITE_DONE) throw com::Error(E_FAIL);
}

/// The value, in whatever type it is stored.
void read_column(sqlite3_stmt* statement, int column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
      (void)sqlite3_column_int64(statement, column);
      break;
    case SQLITE_FLOAT:
      (void)sqlite3_column_double(statement, column);
      break;
    default:
      (void)sqlite3_column_text16(statement, column);
      break;
  }
}

void read_rows(sqlite3_stmt* statement) {
  int result = sqlite3_step(statement);
  for (; result == SQLITE_ROW; result = sqlite3_step(statement)) {
    const int columns = sqlite3_column_count(statement);
    for (int column = 0; column < columns; ++column) read_column(statement, column);
  }
  check(result);
}

}  // namespace

RawDatabase::RawDatabase(const ScratchFile& file) {
  const std::string path(file.path().begin(), file.path().end());
  sqlite3* handle = nullptr;
  const int result =
      sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  check(result);
  for (const char* const setting : {"PRAGMA journal_mode = DELETE", "PRAGMA synchronous = FULL",
                                    "PRAGMA cache_size = -65536", "PRAGMA foreign_keys = ON"}) {
    run(setting);
  }
}

void RawDatabase::run(std::string_view sql) { RawStatement(*this, sql).run(); }

RawStatement::RawStatement(const RawDatabase& database, std::string_view sql) {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(database.handle(), sql.data(), static_cast<int>(sql.size()), &statement,
                           nullptr));
  statement_.reset(statement);
}

void RawStatement::run_bound() {
  read_rows(get());
  sqlite3_reset(get());
}

}  // namespace bench
