#pragma once

#include <unknwn.h>
#include <windows.h>

#include <atomic>
#include <span>

#include "com/object.h"

namespace com {

/// One creatable class: its identifier, its registration script, its creator, and its class object,
/// which is made when first asked for and kept for the module's life.
struct ClassEntry {
  /// Creates an object, part of `outer` when that is not null, and asks it for `iid`.
  using Creator = HRESULT (*)(IUnknown* outer, REFIID iid, void** out);

  CLSID clsid;
  UINT script;
  Creator create;
  std::atomic<IUnknown*> class_object = nullptr;
};

/// The class table of this module; empty before it is attached.
std::span<ClassEntry> module_classes();
/// Called once from the module's entry point.
void attach_classes(std::span<ClassEntry> table);

/// The class object of `clsid`, asked for `iid`.
/// E_POINTER: `out` is null. E_UNEXPECTED: the module is not attached.
/// CLASS_E_CLASSNOTAVAILABLE: no entry has this class identifier.
HRESULT get_class_object(std::span<ClassEntry> table, REFCLSID clsid, REFIID iid, void** out);

/// Frees the class objects; for the module's detachment only.
void release_class_objects(std::span<ClassEntry> table);

}  // namespace com
