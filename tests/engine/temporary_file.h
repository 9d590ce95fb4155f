#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace model_test {

/// A path in the folder for temporary files at which there is no file; a file there goes with this.
class TemporaryFile {
 public:
  // A process that crashed may have left its files, and its number may come again.
  TemporaryFile() { remove(); }
  TemporaryFile(const TemporaryFile&) = delete;
  ~TemporaryFile() { remove(); }

  [[nodiscard]] std::wstring path() const { return path_.wstring(); }
  void write(std::string_view content) const { std::ofstream(path_, std::ios::binary) << content; }
  /// What stands in the file, or in the one beside it with the suffix; empty when there is none.
  [[nodiscard]] std::string read(const std::wstring& suffix = {}) const {
    std::ifstream stream(std::filesystem::path(path() + suffix), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void remove() const {
    std::error_code ignored;
    for (const auto* suffix : {L"", L"-journal", L"-wal", L"-shm"}) {
      std::filesystem::remove(path_.wstring() + suffix, ignored);
    }
  }

 private:
  static inline int number_ = 0;
  std::filesystem::path path_ =
      std::filesystem::temp_directory_path() /
      ("orv_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(++number_) + ".orvdb");
};

}  // namespace model_test
