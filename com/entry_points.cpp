#include "com/entry_points.h"

#include "com/module.h"
#include "com/registrar.h"

// Generated from the interface definitions.
extern "C" {
BOOL WINAPI ProxyDllMain(HINSTANCE, DWORD, LPVOID);
HRESULT WINAPI ProxyDllGetClassObject(REFCLSID, REFIID, void**);
HRESULT WINAPI ProxyDllCanUnloadNow();
HRESULT WINAPI ProxyDllRegisterServer();
HRESULT WINAPI ProxyDllUnregisterServer();
}

namespace com {

BOOL dll_main(const ModuleContents& contents, HINSTANCE module, DWORD reason, LPVOID reserved) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      DisableThreadLibraryCalls(module);
      Module::instance().attach(module);
      attach_classes(contents.classes);
      break;
    case DLL_PROCESS_DETACH:
      // When the process ends, nothing else may be alive to release to.
      if (!reserved) {
        release_class_objects(contents.classes);
        Module::instance().detach();
      }
      break;
  }
  return ProxyDllMain(module, reason, reserved);
}

HRESULT dll_get_class_object(const ModuleContents& contents, REFCLSID clsid, REFIID iid,
                             void** out) {
  // The marshalling code takes a place for its answer as given.
  if (out && SUCCEEDED(ProxyDllGetClassObject(clsid, iid, out))) return S_OK;
  return get_class_object(contents.classes, clsid, iid, out);
}

HRESULT dll_can_unload_now() {
  const bool unused = ProxyDllCanUnloadNow() == S_OK && Module::instance().can_unload();
  return unused ? S_OK : S_FALSE;
}

HRESULT dll_register_server(const ModuleContents& contents) {
  HRESULT result = ProxyDllRegisterServer();
  if (SUCCEEDED(result)) result = register_classes(contents.classes);
  // Registering the type library gave its interfaces to the platform's general marshaller.
  if (SUCCEEDED(result)) result = ProxyDllRegisterServer();
  return result;
}

HRESULT dll_unregister_server(const ModuleContents& contents) {
  ProxyDllUnregisterServer();
  return unregister_classes(contents.classes, contents.library);
}

}  // namespace com
