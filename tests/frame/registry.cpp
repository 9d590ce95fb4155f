#include "tests/frame/registry.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace frame {
namespace {

std::wstring to_text(DWORD type, const wchar_t* data, DWORD bytes) {
  if (type != REG_SZ) return L"type " + std::to_wstring(type) + L", " + std::to_wstring(bytes);
  return {data, wcsnlen(data, bytes / sizeof(wchar_t))};
}

void read_values(HKEY key, const std::wstring& path, RegistryLines& lines) {
  wchar_t name[256];
  wchar_t data[2048];
  DWORD type = 0;
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(std::size(name));
    DWORD bytes = sizeof data;
    const LONG status = RegEnumValueW(key, index, name, &length, nullptr, &type,
                                      reinterpret_cast<BYTE*>(data), &bytes);
    if (status == ERROR_NO_MORE_ITEMS) return;
    // Longer ones are none of ours.
    if (status == ERROR_SUCCESS) lines.insert(value_line(path, name, to_text(type, data, bytes)));
  }
}

void read_key(HKEY key, const std::wstring& path, RegistryLines& lines) {
  lines.insert(key_line(path));
  read_values(key, path, lines);
  // The platform's limit for a key's name.
  wchar_t name[256];
  for (DWORD index = 0; RegEnumKeyW(key, index, name, std::size(name)) == ERROR_SUCCESS; ++index) {
    HKEY child = nullptr;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, &child) != ERROR_SUCCESS) continue;
    read_key(child, path.empty() ? name : path + L"\\" + name, lines);
    RegCloseKey(child);
  }
}

}  // namespace

std::wstring key_line(std::wstring path) {
  CharLowerBuffW(path.data(), static_cast<DWORD>(path.size()));
  return path;
}

std::wstring value_line(const std::wstring& path, const std::wstring& name,
                        const std::wstring& text) {
  return key_line(path) + L" : " + name + L" = " + text;
}

RegistryLines read_classes() {
  RegistryLines lines;
  read_key(HKEY_CLASSES_ROOT, L"", lines);
  return lines;
}

RegistryLines without(const RegistryLines& all, const RegistryLines& others) {
  RegistryLines result;
  std::ranges::set_difference(all, others, std::inserter(result, result.end()));
  return result;
}

RegistryLines take_out(RegistryLines& lines, const std::wstring& path) {
  const std::wstring key = key_line(path);
  RegistryLines taken;
  std::erase_if(lines, [&](const std::wstring& line) {
    if (!line.starts_with(key)) return false;
    const std::wstring_view rest = std::wstring_view(line).substr(key.size());
    const bool within = rest.empty() || rest.starts_with(L"\\") || rest.starts_with(L" : ");
    if (within) taken.insert(line);
    return within;
  });
  return taken;
}

}  // namespace frame
