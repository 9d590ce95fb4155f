// The modules as files: what they import and export, how they are hardened, what they say of
// themselves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/host/loaded_module.h"

namespace {

using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::Not;

/// A module mapped as the loader maps it, with neither imports resolved nor code run.
class Image {
 public:
  explicit Image(const std::wstring& path)
      : base_(reinterpret_cast<const BYTE*>(
            LoadLibraryExW(path.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES))) {}
  ~Image() { FreeLibrary(reinterpret_cast<HMODULE>(const_cast<BYTE*>(base_))); }
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  [[nodiscard]] const IMAGE_OPTIONAL_HEADER& header() const {
    const auto& dos = at<IMAGE_DOS_HEADER>(0);
    return at<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos.e_lfanew)).OptionalHeader;
  }

  [[nodiscard]] std::vector<std::string> imported_modules() const {
    std::vector<std::string> names;
    const auto* entry = &at<IMAGE_IMPORT_DESCRIPTOR>(directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
    for (; entry->Name; ++entry) {
      std::string name = &at<char>(entry->Name);
      std::ranges::transform(name, name.begin(), [](char c) { return std::tolower(c); });
      names.push_back(name);
    }
    return names;
  }

  [[nodiscard]] std::vector<std::string> exported_names() const {
    const auto& exports = at<IMAGE_EXPORT_DIRECTORY>(directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
    std::vector<std::string> names;
    for (DWORD index = 0; index < exports.NumberOfNames; ++index) {
      names.emplace_back(&at<char>((&at<DWORD>(exports.AddressOfNames))[index]));
    }
    EXPECT_EQ(exports.NumberOfFunctions, exports.NumberOfNames) << "something has no name";
    return names;
  }

 private:
  [[nodiscard]] DWORD directory(int index) const {
    return header().DataDirectory[index].VirtualAddress;
  }

  template <class T>
  const T& at(DWORD offset) const {
    return *reinterpret_cast<const T*>(base_ + offset);
  }

  const BYTE* base_;
};

/// One text of a module's version resource, in English and Unicode.
std::wstring version_text(const std::wstring& path, const std::wstring& name) {
  DWORD ignored = 0;
  std::vector<BYTE> version(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(version.size()), version.data());
  void* text = nullptr;
  UINT length = 0;
  VerQueryValueW(version.data(), (L"\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &length);
  return text ? static_cast<const wchar_t*>(text) : L"";
}

class ModuleFile : public testing::TestWithParam<const wchar_t*> {
 protected:
  [[nodiscard]] std::wstring path() const {
    return server::built_file((std::wstring(GetParam()) + L".dll").c_str());
  }

  const Image image_{path()};
};

INSTANTIATE_TEST_SUITE_P(Modules, ModuleFile, testing::Values(L"orv_node", L"orv_modeldb"),
                         [](const auto& info) {
                           const std::wstring name = info.param;
                           return std::string(name.begin(), name.end());
                         });

TEST_P(ModuleFile, ImportsSystemModulesOnly) {
  const std::vector<std::string> of_the_system = {"advapi32.dll", "kernel32.dll", "msvcrt.dll",
                                                  "odbc32.dll",   "ole32.dll",    "oleaut32.dll",
                                                  "rpcrt4.dll",   "user32.dll"};
  EXPECT_THAT(image_.imported_modules(), IsSubsetOf(of_the_system));
}

TEST_P(ModuleFile, ExportsTheFourEntryPointsAndNothingElse) {
  EXPECT_THAT(image_.exported_names(),
              testing::UnorderedElementsAre("DllCanUnloadNow", "DllGetClassObject",
                                            "DllRegisterServer", "DllUnregisterServer"));
}

TEST_P(ModuleFile, IsHardened) {
  const WORD flags = image_.header().DllCharacteristics;
  EXPECT_TRUE(flags & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
  EXPECT_TRUE(flags & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
  if (sizeof(void*) == 8) {
    EXPECT_TRUE(flags & IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA);
  }
  // Without them the module could not be moved, whatever the flag says.
  EXPECT_NE(image_.header().DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0u);
}

TEST_P(ModuleFile, SaysWhatItIs) {
  for (const wchar_t* name : {L"FileDescription", L"FileVersion", L"ProductName"}) {
    EXPECT_THAT(version_text(path(), name), Not(IsEmpty()));
  }
  EXPECT_EQ(version_text(path(), L"InternalName"), GetParam());
  EXPECT_EQ(version_text(path(), L"OriginalFilename"), std::wstring(GetParam()) + L".dll");
}

}  // namespace
