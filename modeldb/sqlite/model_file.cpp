#include "modeldb/sqlite/model_file.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "modeldb/base/failure.h"

namespace modeldb {
namespace {

struct Close {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<void, Close>;

/// The beginning of an SQLite file as sqlite.org/fileformat2.html describes it: the header of 100
/// bytes and, behind it, the first page of the table of tables. Numbers are big-endian.
class Header {
 public:
  /// Nothing when there is no such file, or nothing in it, or no way to read it.
  static std::optional<Header> read(const std::wstring& path) {
    auto* const handle = CreateFileW(path.c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
    const File file(handle);
    Header header;
    DWORD size = 0;
    const BOOL done = ReadFile(handle, header.bytes_.data(), kSize, &size, nullptr);
    if (!done || size == 0) return std::nullopt;
    return header;
  }

  [[nodiscard]] bool is_sqlite() const {
    constexpr std::string_view kMagic("SQLite format 3\0", 16);
    return std::string_view(bytes_.data(), kMagic.size()) == kMagic;
  }

  [[nodiscard]] FileIdentity identity() const {
    constexpr int kSchemaVersion = 60;
    constexpr int kApplicationIdentifier = 68;
    return {.application_id = number(kApplicationIdentifier, 4),
            .schema_version = static_cast<std::int32_t>(number(kSchemaVersion, 4)),
            .has_tables = has_log() || number(kCellCount, 2) != 0};
  }

 private:
  static constexpr int kReadVersion = 19;
  static constexpr int kCellCount = 103;
  static constexpr DWORD kSize = 105;

  /// Newer pages lie in a write-ahead log, tables among them. A model database is made without.
  [[nodiscard]] bool has_log() const { return number(kReadVersion, 1) == 2; }

  [[nodiscard]] std::int64_t number(int offset, int size) const {
    std::int64_t value = 0;
    for (int i = offset; i < offset + size; ++i) {
      value = value << 8 | static_cast<unsigned char>(bytes_[i]);
    }
    return value;
  }

  std::array<char, kSize> bytes_{};  // of a shorter file, the rest stays 0
};

[[noreturn]] void refuse_path(std::wstring_view path, std::wstring_view reason) {
  fail(kCannotOpenFile,
       L"The path " + quoted(path) + L" " + std::wstring(reason) + L". Give the path of a file.");
}

/// Of a name between the separators of a path, in characters.
constexpr std::size_t kLongestName = 255;

std::size_t length_of_name(std::wstring_view path) { return path.size() - path.rfind(L'\\') - 1; }

bool is_too_long(std::wstring_view path) {
  return path.size() >= MAX_PATH || length_of_name(path) > kLongestName;
}

bool is_folder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW((path + L'\\').c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

}  // namespace

std::wstring full_path(std::wstring_view path) {
  if (path.find_first_not_of(L" \t\r\n") == std::wstring_view::npos) {
    fail(kCannotOpenFile, L"No model database is named. Give the path of a file.");
  }
  const auto zero = path.find(L'\0');
  if (zero != std::wstring_view::npos) {
    refuse_path(path.substr(0, zero), L"goes on behind a character of code 0");
  }
  const std::wstring terminated(path);
  std::wstring result(GetFullPathNameW(terminated.c_str(), 0, nullptr, nullptr), L'\0');
  result.resize(GetFullPathNameW(terminated.c_str(), static_cast<DWORD>(result.size()),
                                 result.data(), nullptr));
  if (result.empty()) refuse_path(path, L"cannot be that of a file");
  if (result.starts_with(L"\\\\.\\") || result == L"\\\\.")
    refuse_path(path, L"is that of a device");
  return result;
}

void require_model(const FileIdentity& identity, const std::wstring& path, int newest_version) {
  if (identity.is_blank()) return;
  if (identity.application_id != kApplicationId) {
    fail(kCannotOpenFile, L"The file " + quoted(path) +
                              L" is a database of another program, no model database. Choose "
                              L"another file, or a new one.");
  }
  if (identity.schema_version > newest_version) {
    fail(kCannotOpenFile, L"The model " + quoted(path) +
                              L" was made by a newer version of the model database (its schema is "
                              L"version " +
                              std::to_wstring(identity.schema_version) +
                              L", this one knows version " + std::to_wstring(newest_version) +
                              L"). Install that version, orv_modeldb.dll, to open it.");
  }
}

void require_model_header(const std::wstring& path, int newest_version) {
  const auto header = Header::read(path);
  if (!header) return;
  if (!header->is_sqlite()) fail_as_no_model(path);
  require_model(header->identity(), path, newest_version);
}

void require_room_for_journal(const std::wstring& path) {
  constexpr std::wstring_view kJournal = L"-journal";  // behind the file's own name
  if (length_of_name(path) + kJournal.size() > kLongestName) refuse_path(path, L"is too long");
}

bool file_exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void remove_file(const std::wstring& path) noexcept { DeleteFileW(path.c_str()); }

bool is_write_protected(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) &&
         !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

void fail_to_open(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (exists && (attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    refuse_path(path, path.ends_with(L'\\') ? L"is the root of a drive" : L"is that of a folder");
  }
  if (is_too_long(path)) refuse_path(path, L"is too long");
  if (exists) {
    fail(kCannotOpenFile, L"The file " + quoted(path) +
                              L" cannot be opened. Check that no other program has it to itself, "
                              L"and that you may read it.");
  }
  const std::wstring folder = path.substr(0, path.rfind(L'\\'));
  if (!is_folder(folder)) {
    fail(kCannotOpenFile, L"The model " + quoted(path) + L" cannot be made, since the folder " +
                              quoted(folder) + L" does not exist. Make the folder first.");
  }
  fail(kCannotOpenFile, L"The model " + quoted(path) + L" cannot be made: the folder " +
                            quoted(folder) +
                            L" is write-protected, or the name is none for a file. Choose another "
                            L"folder or name.");
}

void fail_as_no_model(const std::wstring& path) {
  fail(kCannotOpenFile,
       L"The file " + quoted(path) + L" is no model database. Choose another file, or a new one.");
}

}  // namespace modeldb
