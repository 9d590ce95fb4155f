#include "tools/content/file_trouble.h"

#include <algorithm>
#include <system_error>

namespace content {
namespace {

namespace fs = std::filesystem;

std::string utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::string full_path(const fs::path& path) {
  std::error_code error;
  const fs::path full = fs::absolute(path, error);
  return utf8(error ? path : full);
}

/// In characters, or bytes where names are bytes, of usual file systems.
constexpr std::size_t kLongestName = 255;

bool is_blank(const fs::path& path) {
  return std::ranges::all_of(path.native(), [](auto c) { return c == ' '; });
}

std::string named(const fs::path& path) { return '"' + full_path(path) + '"'; }

bool has_folder(const fs::path& path) {
  std::error_code error;
  return !path.has_parent_path() || fs::is_directory(path.parent_path(), error);
}

/// What is wrong with the path, be it to read or to write; empty if nothing is.
std::string why_no_file(const fs::path& path) {
  if (is_blank(path)) return "The path is empty. Give the path of a file.";
  if (path.filename().native().size() > kLongestName) {
    return "The name \"" + utf8(path.filename()) + "\" is too long for a file.";
  }
  std::error_code error;
  if (is_device(path)) {
    return "The path " + named(path) + " is that of a device. Give the path of a file.";
  }
  if (fs::is_directory(path, error)) {
    return "The path " + named(path) + " is that of a folder. Give the path of a file.";
  }
  return {};
}

}  // namespace

bool is_device(const fs::path& path) { return full_path(path).starts_with(R"(\\.\)"); }

std::string why_not_read(const fs::path& path) {
  if (std::string reason = why_no_file(path); !reason.empty()) return reason;
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::status_known(status)) {
    return "Whether there is a file " + named(path) + " cannot be told: " + error.message() + ".";
  }
  if (!fs::exists(status)) {
    return "There is no file " + named(path) +
           (has_folder(path) ? "." : ", nor is there its folder.");
  }
  return "The file " + named(path) +
         " cannot be read. May you read it, and does no other program have it to itself?";
}

std::string why_not_written(const fs::path& path) {
  if (std::string reason = why_no_file(path); !reason.empty()) return reason;
  if (!has_folder(path)) {
    return "The file " + named(path) + " cannot be written, since there is no such folder.";
  }
  return "The file " + named(path) +
         " cannot be written. May you write there, is there room, and does no other program have "
         "it open?";
}

}  // namespace content
