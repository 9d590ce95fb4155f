#pragma once

#include <windows.h>

#include <set>
#include <string>

namespace frame {

/// A part of the registry as lines: one for each key and one for each of its values.
using RegistryLines = std::set<std::wstring>;

/// The path of a key, in lower case: the registry does not tell cases apart.
std::wstring key_line(std::wstring path);

/// `path : name = text`; the default value has no name.
std::wstring value_line(const std::wstring& path, const std::wstring& name,
                        const std::wstring& text);

/// All keys below HKEY_CLASSES_ROOT. A value that is no text shows its type and size.
RegistryLines read_classes();

/// The lines of `all` that `others` has not.
RegistryLines without(const RegistryLines& all, const RegistryLines& others);

/// Takes the key `path` and all that lies under it out of the lines.
RegistryLines take_out(RegistryLines& lines, const std::wstring& path);

}  // namespace frame
