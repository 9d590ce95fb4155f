// The entry points of orv_modeldb.dll.

#include "com/entry_points.h"

#include "modeldb/classes.h"

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) {
  return com::dll_main(modeldb::module_contents(), module, reason, reserved);
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return com::dll_get_class_object(modeldb::module_contents(), clsid, iid, out);
}

STDAPI DllCanUnloadNow() { return com::dll_can_unload_now(); }

STDAPI DllRegisterServer() { return com::dll_register_server(modeldb::module_contents()); }

STDAPI DllUnregisterServer() { return com::dll_unregister_server(modeldb::module_contents()); }
