#include "modeldb/engine/utf8.h"

#include <windows.h>

namespace modeldb {

std::string to_utf8(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  std::string result(
      WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, result.data(), static_cast<int>(result.size()),
                      nullptr, nullptr);
  return result;
}

std::wstring from_utf8(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring result(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(),
                      static_cast<int>(result.size()));
  return result;
}

}  // namespace modeldb
