#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace modeldb {

/// Marks an SQLite file as a model database: "ORVD".
inline constexpr std::int64_t kApplicationId = 0x4F525644;

/// What an SQLite file says of itself.
struct FileIdentity {
  std::int64_t application_id = 0;
  std::int64_t schema_version = 0;
  bool has_tables = false;

  /// Nobody has written anything into it yet.
  [[nodiscard]] bool is_blank() const {
    return application_id == 0 && schema_version == 0 && !has_tables;
  }
};

/// The full path of the file that `path` names. kCannotOpenFile: it names none, such as a blank
/// path, one with a character of code 0, and the name of a device.
std::wstring full_path(std::wstring_view path);

/// Raises kCannotOpenFile, with a sentence that names the file, unless it is blank or a model
/// database whose schema is of `newest_version` or older.
void require_model(const FileIdentity& identity, const std::wstring& path, int newest_version);

/// Does the same by the first bytes of the file, before SQLite opens it: SQLite tidies up what it
/// opens, and a file of another program must stay as it is. A file that is not there, is empty or
/// cannot be read is left to SQLite.
void require_model_header(const std::wstring& path, int newest_version);

/// Whether something goes by that path.
bool file_exists(const std::wstring& path);

/// Raises kCannotOpenFile where a new file could be made, but never written: the name of its
/// journal would be too long.
void require_room_for_journal(const std::wstring& path);

/// Removes the file, if that can be done.
void remove_file(const std::wstring& path) noexcept;

/// Whether there is a file with the attribute that forbids to write it.
bool is_write_protected(const std::wstring& path);

/// Raises kCannotOpenFile, with what keeps the file from being opened or made.
[[noreturn]] void fail_to_open(const std::wstring& path);

/// Raises kCannotOpenFile: the file is no SQLite database at all.
[[noreturn]] void fail_as_no_model(const std::wstring& path);

}  // namespace modeldb
