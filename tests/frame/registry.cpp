#include "tests/frame/registry.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace frame {
namespace {

// The platform's limits.
constexpr DWORD kLongestKeyName = 255;
constexpr DWORD kLongestValueName = 16383;

/// An open key; none when it cannot be opened.
class Key {
 public:
  Key(HKEY parent, const wchar_t* name) {
    if (RegOpenKeyExW(parent, name, 0, KEY_READ, &key_) != ERROR_SUCCESS) key_ = nullptr;
  }
  ~Key() {
    if (key_) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  [[nodiscard]] HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

std::wstring to_text(DWORD type, const std::vector<wchar_t>& data, DWORD bytes) {
  if (type != REG_SZ) return L"type " + std::to_wstring(type) + L", " + std::to_wstring(bytes);
  std::wstring text(data.data(), bytes / sizeof(wchar_t));
  while (!text.empty() && text.back() == L'\0') text.pop_back();
  return text;
}

void read_values(HKEY key, const std::wstring& path, RegistryLines& lines) {
  std::vector<wchar_t> name(kLongestValueName + 1);
  std::vector<wchar_t> data(4096);
  for (DWORD index = 0;; ++index) {
    auto name_length = static_cast<DWORD>(name.size());
    auto bytes = static_cast<DWORD>(data.size() * sizeof(wchar_t));
    DWORD type = 0;
    const LONG status = RegEnumValueW(key, index, name.data(), &name_length, nullptr, &type,
                                      reinterpret_cast<BYTE*>(data.data()), &bytes);
    if (status == ERROR_NO_MORE_ITEMS) return;
    if (status != ERROR_SUCCESS) continue;
    lines.insert(value_line(path, name.data(), to_text(type, data, bytes)));
  }
}

void read_key(HKEY key, const std::wstring& path, RegistryLines& lines) {
  lines.insert(key_line(path));
  read_values(key, path, lines);
  wchar_t name[kLongestKeyName + 1];
  DWORD length = kLongestKeyName + 1;
  for (DWORD index = 0; RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr,
                                      nullptr) == ERROR_SUCCESS;
       ++index, length = kLongestKeyName + 1) {
    const Key child(key, name);
    if (child.get()) read_key(child.get(), path.empty() ? name : path + L"\\" + name, lines);
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
