#pragma once

#include <span>

#include "com/entry_points.h"

namespace modeldb {

/// The classes that the module registers.
std::span<com::ClassEntry> classes();

/// ADO's class that the module stands in for while a model is open; never registered.
std::span<com::ClassEntry> ado_classes();

/// Both, and the type library of orv_modeldb.dll.
com::ModuleContents module_contents();

}  // namespace modeldb
