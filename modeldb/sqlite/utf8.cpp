#include "modeldb/sqlite/utf8.h"

#include <windows.h>

#include <algorithm>

#include "modeldb/base/characters.h"

namespace modeldb {
std::string_view to_utf8(std::wstring_view text, std::string& buffer) {
  if (text.empty()) return {buffer.data(), 0};
  if (std::ranges::any_of(text, [](wchar_t unit) { return unit >= 0xFFFE; }))
    fail_on_characters(text);
  constexpr std::size_t kMostBytesPerUnit = 3;
  if (buffer.size() < text.size() * kMostBytesPerUnit) {
    buffer.resize(text.size() * kMostBytesPerUnit);
  }
  const int size =
      WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), static_cast<int>(text.size()),
                          buffer.data(), static_cast<int>(buffer.size()), nullptr, nullptr);
  if (size == 0) fail_on_characters(text);
  return {buffer.data(), static_cast<std::size_t>(size)};
}

std::string to_utf8(std::wstring_view text) {
  std::string buffer;
  buffer.resize(to_utf8(text, buffer).size());
  return buffer;
}

std::wstring from_utf8(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring result(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(),
                      static_cast<int>(result.size()));
  return result;
}

}  // namespace modeldb
