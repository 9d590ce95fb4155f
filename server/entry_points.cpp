// The entry points of orv_node.dll.

#include "com/entry_points.h"

#include "server/classes.h"

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  return com::dll_main(orv::module_contents(), module, reason, reserved);
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return com::dll_get_class_object(orv::module_contents(), clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::dll_can_unload_now(); }

STDAPI DllRegisterServer() { return com::dll_register_server(orv::module_contents()); }

STDAPI DllUnregisterServer() { return com::dll_unregister_server(orv::module_contents()); }
