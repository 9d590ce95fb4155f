#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/host/loaded_module.h"

namespace frame {

/// A folder of that name, among those for temporary files, with copies of what the build made for
/// users; for as long as this lives.
class CopiedFiles {
 public:
  CopiedFiles(const std::wstring& folder, const std::vector<std::wstring>& names)
      : folder_(std::filesystem::path(server::environment(L"TEMP")) / folder) {
    std::filesystem::create_directories(folder_);
    for (const std::wstring& name : names) {
      CopyFileW(server::built_file(name).c_str(), file(name).c_str(), FALSE);
    }
  }
  ~CopiedFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  CopiedFiles(const CopiedFiles&) = delete;
  CopiedFiles& operator=(const CopiedFiles&) = delete;

  [[nodiscard]] std::wstring path() const { return folder_.wstring(); }
  [[nodiscard]] std::wstring file(const std::wstring& name) const {
    return (folder_ / name).wstring();
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace frame
