#pragma once

#include <unknwn.h>
#include <windows.h>

#include <string>

#include "com/ptr.h"

namespace server {

/// An environment variable; empty when it is not set.
inline std::wstring environment(const wchar_t* name) {
  std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

/// Full path of a file that the build made for users: it lies in the folder ORV_OUT_DIR.
inline std::wstring built_file(const std::wstring& name) {
  const std::wstring path = environment(L"ORV_OUT_DIR") + L"\\" + name;
  wchar_t full[MAX_PATH];
  return {full, GetFullPathNameW(path.c_str(), MAX_PATH, full, nullptr)};
}

/// A module in this process, used through its entry points alone, as the platform uses it.
class LoadedModule {
 public:
  explicit LoadedModule(const std::wstring& path = built_file(L"orv_node.dll"))
      : handle_(LoadLibraryW(path.c_str())) {}
  ~LoadedModule() {
    if (handle_) FreeLibrary(handle_);
  }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  /// Null when the module could not be loaded.
  [[nodiscard]] HMODULE handle() const { return handle_; }

  HRESULT get_class_object(REFCLSID clsid, REFIID iid, void** out) const {
    return entry_point<LPFNGETCLASSOBJECT>("DllGetClassObject")(clsid, iid, out);
  }
  HRESULT can_unload_now() const { return entry_point<LPFNCANUNLOADNOW>("DllCanUnloadNow")(); }
  HRESULT register_server() const { return entry_point<Registration>("DllRegisterServer")(); }
  HRESULT unregister_server() const { return entry_point<Registration>("DllUnregisterServer")(); }

  /// The class object of a class; empty when there is none.
  [[nodiscard]] com::Ptr<IClassFactory> class_object(REFCLSID clsid) const {
    com::Ptr<IClassFactory> factory;
    get_class_object(clsid, IID_IClassFactory, factory.put_void());
    return factory;
  }

  /// A new object of a class; empty when it cannot be made.
  template <class Interface>
  [[nodiscard]] com::Ptr<Interface> create(REFCLSID clsid) const {
    com::Ptr<Interface> object;
    if (const auto factory = class_object(clsid)) {
      factory->CreateInstance(nullptr, __uuidof(Interface), object.put_void());
    }
    return object;
  }

 private:
  using Registration = HRESULT(STDAPICALLTYPE*)();

  template <class Function>
  Function entry_point(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(handle_, name)));
  }

  HMODULE handle_;
};

}  // namespace server
