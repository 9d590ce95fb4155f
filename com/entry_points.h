#pragma once

#include <span>

#include "com/class_table.h"
#include "com/type_info.h"

namespace com {

/// What a module is made of. Each module defines module_contents(), and links entry_points.cpp.
struct ModuleContents {
  /// Creatable and registered, in this order.
  std::span<ClassEntry> classes;
  const TypeLibrary& library;
};
ModuleContents module_contents();

}  // namespace com
