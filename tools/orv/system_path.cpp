#include "tools/orv/system_path.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <string_view>

#include "tools/text/utf8.h"

namespace orv {
namespace {

using UnixName = char*(CDECL*)(LPCWSTR);

/// What Wine alone has; null on Windows.
UnixName unix_name_function() {
  return reinterpret_cast<UnixName>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
}

bool is_full_path(std::string_view text) {
  return text.size() > 3 && std::isalpha(static_cast<unsigned char>(text[0])) &&
         text.substr(1, 2) == ":\\";
}

/// Empty when the system knows no name for the path, as where its folder does not exist.
std::string name_of(UnixName unix_name, const std::string& path) {
  char* const name = unix_name(text::to_wide(path).c_str());
  if (!name) return {};
  std::string result(name);
  HeapFree(GetProcessHeap(), 0, name);
  return result;
}

/// The path as it was when the system knows another name for no folder of it either.
std::string system_path(UnixName unix_name, const std::string& path) {
  constexpr std::size_t kDrive = 2;  // "Z:"
  for (std::size_t end = path.size(); end > kDrive; end = path.rfind('\\', end - 1)) {
    const std::string known = name_of(unix_name, path.substr(0, end));
    if (known.empty()) continue;
    std::string rest = path.substr(end);
    std::ranges::replace(rest, '\\', '/');
    return known + rest;
  }
  return path;
}

}  // namespace

std::string with_system_paths(const std::string& sentence) {
  static const UnixName unix_name = unix_name_function();
  if (!unix_name) return sentence;
  std::string result;
  std::size_t at = 0;
  for (std::size_t mark = sentence.find('"'); mark != std::string::npos;
       mark = sentence.find('"', mark + 1)) {
    const std::size_t begin = mark + 1;
    const std::size_t end = sentence.find('"', begin);
    if (end == std::string::npos) break;
    if (!is_full_path(std::string_view(sentence).substr(begin))) continue;
    result += sentence.substr(at, begin - at) +
              system_path(unix_name, sentence.substr(begin, end - begin));
    at = mark = end;
  }
  return result + sentence.substr(at);
}

}  // namespace orv
