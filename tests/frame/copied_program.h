#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/frame/copied_files.h"

namespace frame {

/// A program that was put on the machine by copying: in a folder of that name, among those for
/// temporary files, its manifest, modules and the modules' assembly manifests. What is registered
/// for it alone is found in its activation context.
class CopiedProgram {
 public:
  CopiedProgram(const std::wstring& folder, const std::vector<std::wstring>& modules)
      : files_(folder, files_of(modules)) {
    const std::wstring path = files_.path();
    const std::wstring manifest = files_.file(L"program.manifest");
    std::wofstream(std::filesystem::path(manifest)) << manifest_naming(modules);
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
    description.lpSource = manifest.c_str();
    description.lpAssemblyDirectory = path.c_str();
    context_ = CreateActCtxW(&description);
  }
  ~CopiedProgram() { ReleaseActCtx(context_); }
  CopiedProgram(const CopiedProgram&) = delete;
  CopiedProgram& operator=(const CopiedProgram&) = delete;

  /// INVALID_HANDLE_VALUE when the manifests were refused.
  [[nodiscard]] HANDLE context() const { return context_; }

 private:
  static std::vector<std::wstring> files_of(const std::vector<std::wstring>& modules) {
    std::vector<std::wstring> names;
    for (const std::wstring& module : modules) {
      names.push_back(module + L".dll");
      names.push_back(module + L".sxs.manifest");
    }
    return names;
  }

  static std::wstring manifest_naming(const std::vector<std::wstring>& modules) {
    std::wstring text =
        LR"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="program" version="1.0.0.0"/>
)";
    for (const std::wstring& module : modules) {
      text +=
          LR"(  <dependency>
    <dependentAssembly>
      <assemblyIdentity type="win32" name=")" +
          module +
          LR"(.sxs" version="1.0.0.0" processorArchitecture="*"/>
    </dependentAssembly>
  </dependency>
)";
    }
    return text + L"</assembly>\n";
  }

  CopiedFiles files_;
  HANDLE context_;
};

/// A thread's use of a context, from here to the end of the scope.
class Activated {
 public:
  explicit Activated(HANDLE context) { EXPECT_TRUE(ActivateActCtx(context, &cookie_)); }
  ~Activated() { DeactivateActCtx(0, cookie_); }
  Activated(const Activated&) = delete;
  Activated& operator=(const Activated&) = delete;

 private:
  ULONG_PTR cookie_ = 0;
};

}  // namespace frame
