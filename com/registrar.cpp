#include "com/registrar.h"

#include <atliface.h>

#include <string>

#include "com/boundary.h"
#include "com/bstr.h"

namespace com {
namespace {

// The registrar's class, which the platform's header declares and no library defines.
constexpr CLSID kRegistrar = {
    0x44EC053A, 0x400F, 0x11D0, {0x9D, 0xCD, 0x00, 0xA0, 0xC9, 0x03, 0x91, 0xD3}};

constexpr wchar_t kScriptResourceType[] = L"REGISTRY";

/// Path of a library of the platform. It is named in full so that a file of the same name beside
/// the host's program is never loaded in its place.
std::wstring system_library(const wchar_t* name) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size())));
  return path + L'\\' + name;
}

/// `path` as it must stand between the single quotes of a script.
std::wstring escaped(std::wstring_view path) {
  std::wstring result;
  for (const wchar_t character : path) {
    result.append(character == L'\'' ? 2 : 1, character);
  }
  return result;
}

/// The platform's registrar with the module's path as the replacement in scripts.
Ptr<IRegistrar> make_registrar(const std::wstring& module) {
  const HMODULE library = LoadLibraryW(system_library(L"atl.dll").c_str());
  if (!library) throw Error(HRESULT_FROM_WIN32(GetLastError()));
  // The library stays loaded: its objects keep code of it in use.
  const auto get_class_object = reinterpret_cast<LPFNGETCLASSOBJECT>(
      reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  if (!get_class_object) throw Error(HRESULT_FROM_WIN32(GetLastError()));
  Ptr<IClassFactory> factory;
  check(get_class_object(kRegistrar, IID_IClassFactory, factory.put_void()));
  Ptr<IRegistrar> registrar;
  check(factory->CreateInstance(nullptr, __uuidof(IRegistrar), registrar.put_void()));
  check(registrar->AddReplacement(L"Module", escaped(module).c_str()));
  check(registrar->AddReplacement(L"Module_Raw", module.c_str()));
  return registrar;
}

}  // namespace

HRESULT register_classes(std::span<const ClassEntry> table) {
  return boundary([&] {
    const std::wstring module = Module::instance().path();
    const Ptr<IRegistrar> registrar = make_registrar(module);
    for (const ClassEntry& entry : table) {
      check(registrar->ResourceRegister(module.c_str(), entry.script, kScriptResourceType));
    }
    Ptr<ITypeLib> library;
    check(LoadTypeLibEx(module.c_str(), REGKIND_NONE, library.put()));
    check(RegisterTypeLib(library.get(), Bstr(module).get(), nullptr));
  });
}

HRESULT unregister_classes(std::span<const ClassEntry> table, const TypeLibrary& library) {
  return boundary([&] {
    const std::wstring module = Module::instance().path();
    const Ptr<IRegistrar> registrar = make_registrar(module);
    for (const ClassEntry& entry : table) {
      check(registrar->ResourceUnregister(module.c_str(), entry.script, kScriptResourceType));
    }
    constexpr SYSKIND kSystem = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
    check(UnRegisterTypeLib(library.id, library.major, library.minor, library.locale, kSystem));
  });
}

}  // namespace com
