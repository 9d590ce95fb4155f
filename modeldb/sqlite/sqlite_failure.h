#pragma once

#include <string>
#include <string_view>

namespace modeldb {

/// What SQLite answered, and about what.
struct SqliteFailure {
  int result;
  std::wstring_view reason;  ///< in SQLite's words
  std::wstring_view path;    ///< of the file
  std::wstring_view sql;     ///< the statement's text
};

/// Raises it with a sentence; std::bad_alloc when memory is what was lacking.
[[noreturn]] void fail_as_sqlite(const SqliteFailure& failure);

}  // namespace modeldb
