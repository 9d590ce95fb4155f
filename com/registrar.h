#pragma once

#include <windows.h>

#include <span>

#include "com/class_table.h"
#include "com/type_info.h"

namespace com {

/// Runs every entry's registration script (a resource of type REGISTRY) in table order, then
/// registers the module's type library. Returns the first failure at once.
HRESULT register_classes(std::span<const ClassEntry> table);

/// Undoes register_classes, in the same order; returns the first failure at once.
HRESULT unregister_classes(std::span<const ClassEntry> table, const TypeLibrary& library);

}  // namespace com
