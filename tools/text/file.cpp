#include "tools/text/file.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <system_error>

#include "tools/content/file_trouble.h"
#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace text {

std::filesystem::path path_of(std::string_view path) { return to_wide(path); }

std::string full_path(std::string_view path) {
  if (path.find_first_not_of(' ') == std::string_view::npos) {
    fail(kInvalidArgument, "The path is empty. Pass that of a file.");
  }
  std::error_code error;
  const auto full = std::filesystem::absolute(path_of(path), error);
  return error ? std::string(path) : to_utf8(full.wstring());
}

bool is_same_file(const std::filesystem::path& first, const std::filesystem::path& second) {
  std::error_code error;
  return std::filesystem::equivalent(first, second, error) && !error;
}

namespace {

/// What such a file begins with is all that a model is known by without opening it.
bool is_database(const std::filesystem::path& path) {
  constexpr std::string_view kBeginning = "SQLite format 3";
  std::array<char, kBeginning.size()> bytes{};
  std::ifstream stream(path, std::ios::binary);
  return stream.read(bytes.data(), bytes.size()) &&
         std::string_view(bytes.data(), bytes.size()) == kBeginning;
}

/// A name that no other file of this or another program has, and that fits where `name` does: the
/// beginning of a long one stands for it.
std::wstring temporary_name(const std::wstring& name) {
  static std::atomic<int> number = 0;
  constexpr std::size_t kMost = 40;
  std::wstring result = name.substr(0, kMost);
  // Half of a surrogate pair is no name.
  if (!result.empty() && IS_HIGH_SURROGATE(result.back())) result.pop_back();
  return result + L"." + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++number) +
         L".partial";
}

}  // namespace

NewFile::NewFile(std::string_view path) : name_(path), path_(path_of(path)) {
  if (is_database(path_)) {
    fail(kCannotWriteFile,
         "The file \"" + name_ + "\" is a model, which is not written over. Choose another name.");
  }
  temporary_ = path_.parent_path() / temporary_name(path_.filename().native());
  stream_.open(temporary_, std::ios::binary | std::ios::trunc);
  if (!stream_) fail_to_write();
}

NewFile::~NewFile() {
  if (completed_) return;
  stream_.close();
  std::error_code ignored;
  std::filesystem::remove(temporary_, ignored);
}

void NewFile::write(std::string_view bytes) {
  if (!stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) fail_to_write();
}

void NewFile::complete() {
  stream_.close();
  if (!stream_) fail_to_write();
  if (!MoveFileExW(temporary_.c_str(), path_.c_str(),
                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    fail_to_write();
  }
  completed_ = true;
}

void NewFile::fail_to_write() const { fail(kCannotWriteFile, content::why_not_written(path_)); }

}  // namespace text
