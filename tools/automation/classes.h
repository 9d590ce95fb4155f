#pragma once

#include "com/entry_points.h"

namespace automation {

/// The class table and the type library of orv_tools.dll.
com::ModuleContents module_contents();

}  // namespace automation
