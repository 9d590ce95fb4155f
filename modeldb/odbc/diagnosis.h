#pragma once

#include <string>
#include <string_view>

#include "modeldb/odbc/driver_manager.h"

namespace modeldb {

/// What ODBC says of the call that failed on a handle.
struct Diagnosis {
  /// Five characters, of the server or of ODBC; empty when nothing is said.
  std::wstring state;
  /// The server's words. They may hold texts of statements, and values of rows: they are for
  /// finding out which name was meant, not for showing.
  std::wstring message;

  static Diagnosis of(SQLSMALLINT handle_type, SQLHANDLE handle);

  [[nodiscard]] bool is(std::wstring_view wanted) const { return state == wanted; }
  [[nodiscard]] bool is_of_class(std::wstring_view prefix) const {
    return state.starts_with(prefix);
  }
  /// The table or column that the server looks for in vain, in small letters; empty when that is
  /// not what is wrong.
  [[nodiscard]] std::wstring missing_name() const;
  /// The connection is gone, and with it the transaction that was open.
  [[nodiscard]] bool is_lost_connection() const;
};

/// Raises what happened to a statement with a sentence. `sql` is its text, `location` that of the
/// model.
[[noreturn]] void fail_as_server(const Diagnosis& diagnosis, std::wstring_view location,
                                 std::wstring_view sql);
/// Raises kInvalidConnection: it was lost, and with it what was not committed.
[[noreturn]] void fail_as_disconnected(std::wstring_view location);

/// Raises kCannotOpenFile: the model lost a table or column of that name since it was opened.
[[noreturn]] void fail_as_reshaped(const std::wstring& name, std::wstring_view location);
/// Raises kIntegrityViolation: the server has left out rows that it was given.
[[noreturn]] void fail_as_not_kept(std::wstring_view sql);
/// `change`, which returns a row for each that it writes, as a text that fails with kNotKeptState
/// when there are not as many.
std::wstring kept_whole(std::wstring_view change, std::size_t rows);
inline constexpr std::wstring_view kNotKeptState = L"2201E";  // that of ln(0)

// What the model's own triggers answer with.

/// Records stand on the row.
inline constexpr std::wstring_view kOccupiedState = L"OV001";
/// Somebody else has deleted the row that records are put on.
inline constexpr std::wstring_view kTakenAwayState = L"OV002";

}  // namespace modeldb
