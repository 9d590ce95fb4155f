#pragma once

#include <string>
#include <string_view>

namespace modeldb {

/// What begins the location of a model that is reached through ODBC.
inline constexpr std::wstring_view kOdbcPrefix = L"odbc:";

/// kCannotOpenFile: the location is that of no file, but looks like a connection string whose
/// beginning is mistyped. The sentence does not repeat it, since it may hold a password.
void require_no_connection_text(std::wstring_view location);

/// How a model is reached, as its user gives it: "odbc:Driver={PostgreSQL Unicode};Server=…".
struct ConnectionText {
  /// For ODBC: with what the user gave, and the settings by which the driver does what the engine
  /// relies on.
  std::wstring complete;
  /// For sentences and Location: who is reached, by what, as whom. What might be secret, and
  /// settings, are left out.
  std::wstring shown;
  std::wstring driver;  ///< its name, or empty
  std::wstring source;  ///< that of the data source, or empty
};

/// kCannotOpenFile, with a sentence: it is no connection string.
ConnectionText read_connection_text(std::wstring_view location);

}  // namespace modeldb
