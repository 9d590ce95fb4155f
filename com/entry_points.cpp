// A module's entry points. Marshalling code for the module's own interfaces lies in the same module
// and is asked first.

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

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      DisableThreadLibraryCalls(module);
      com::Module::instance().attach(module);
      break;
    case DLL_PROCESS_DETACH:
      // When the process ends, nothing else may be alive to release to.
      if (!reserved) {
        com::release_class_objects(com::module_contents().classes);
        com::Module::instance().detach();
      }
      break;
  }
  return ProxyDllMain(module, reason, reserved);
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  // The marshalling code takes a place for its answer as given.
  if (out && SUCCEEDED(ProxyDllGetClassObject(clsid, iid, out))) return S_OK;
  return com::get_class_object(com::module_contents().classes, clsid, iid, out);
}

STDAPI DllCanUnloadNow() {
  const bool unused = ProxyDllCanUnloadNow() == S_OK && com::Module::instance().can_unload();
  return unused ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  HRESULT result = ProxyDllRegisterServer();
  if (SUCCEEDED(result)) result = com::register_classes(com::module_contents().classes);
  // Registering the type library gave its interfaces to the platform's general marshaller.
  if (SUCCEEDED(result)) result = ProxyDllRegisterServer();
  return result;
}

STDAPI DllUnregisterServer() {
  ProxyDllUnregisterServer();
  const com::ModuleContents contents = com::module_contents();
  return com::unregister_classes(contents.classes, contents.library);
}
