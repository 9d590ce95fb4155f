#pragma once

#include "com/entry_points.h"

namespace orv {

/// The class table and the type library of orv_node.dll.
com::ModuleContents module_contents();

}  // namespace orv
