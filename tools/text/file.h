#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace text {

// Paths are UTF-8. Failures are raised with a sentence that names the path.

std::filesystem::path path_of(std::string_view path);
/// The full path of the file that `path` names; raises kInvalidArgument for a blank one.
std::string full_path(std::string_view path);
/// Whether both name the same file; false when one of them is not there.
bool is_same_file(const std::filesystem::path& first, const std::filesystem::path& second);

/// A file that is written under a temporary name beside its own, which it gets when it is complete:
/// until then what had the name before is untouched. It takes the place of any file but a model.
class NewFile {
 public:
  /// Raises kCannotWriteFile when the file cannot be made, or a model has the name.
  explicit NewFile(std::string_view path);
  /// Removes what was written, unless it was completed.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(std::string_view bytes);
  void complete();

 private:
  [[noreturn]] void fail_to_write() const;

  std::string name_;
  std::filesystem::path path_;
  std::filesystem::path temporary_;
  std::ofstream stream_;
  bool completed_ = false;
};

}  // namespace text
