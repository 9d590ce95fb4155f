// The entry points of orv_tools.dll.

#include "com/entry_points.h"

#include "tools/automation/classes.h"

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  return com::dll_main(automation::module_contents(), module, reason, reserved);
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return com::dll_get_class_object(automation::module_contents(), clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::dll_can_unload_now(); }

STDAPI DllRegisterServer() { return com::dll_register_server(automation::module_contents()); }

STDAPI DllUnregisterServer() { return com::dll_unregister_server(automation::module_contents()); }
