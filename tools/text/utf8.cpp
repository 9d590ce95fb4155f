#include "tools/text/utf8.h"

#include <windows.h>

namespace text {

std::string to_utf8(std::wstring_view text) {
  const auto length = static_cast<int>(text.size());
  std::string result(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), length,
                                                                  nullptr, 0, nullptr, nullptr)),
                     '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(),
                      static_cast<int>(result.size()), nullptr, nullptr);
  return result;
}

std::wstring to_wide(std::string_view text) {
  const auto length = static_cast<int>(text.size());
  std::wstring result(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0)),
      L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(),
                      static_cast<int>(result.size()));
  return result;
}

}  // namespace text
