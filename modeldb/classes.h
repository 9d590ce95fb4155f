#pragma once

#include <span>

#include "com/entry_points.h"

namespace modeldb {

/// The classes that the module registers.
std::span<com::ClassEntry> classes();

/// Those, and the type library of orv_modeldb.dll.
com::ModuleContents module_contents();

}  // namespace modeldb
