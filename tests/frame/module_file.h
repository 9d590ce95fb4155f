#pragma once

#include <windows.h>

#include <string>

namespace frame {

/// An environment variable; empty when it is not set.
inline std::wstring environment(const wchar_t* name) {
  std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

/// Full path of a file that the build made for users.
inline std::wstring module_file(const wchar_t* name) {
  const std::wstring path = environment(L"ORV_OUT_DIR") + L"\\" + name;
  wchar_t full[MAX_PATH];
  return {full, GetFullPathNameW(path.c_str(), MAX_PATH, full, nullptr)};
}

}  // namespace frame
