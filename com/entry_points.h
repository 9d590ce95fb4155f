#pragma once

#include <windows.h>

#include <span>

#include "com/class_table.h"
#include "com/type_info.h"

namespace com {

/// What a module is made of.
struct ModuleContents {
  /// Creatable and registered, in this order.
  std::span<ClassEntry> classes;
  const TypeLibrary& library;
};

// What the entry points of a module do, each by the name of its own. Marshalling code for the
// module's own interfaces lies in the same module and is asked first.

BOOL dll_main(const ModuleContents& contents, HINSTANCE module, DWORD reason, LPVOID reserved);
HRESULT dll_get_class_object(const ModuleContents& contents, REFCLSID clsid, REFIID iid,
                             void** out);
HRESULT dll_can_unload_now();
HRESULT dll_register_server(const ModuleContents& contents);
HRESULT dll_unregister_server(const ModuleContents& contents);

}  // namespace com
