#pragma once

#include "com/entry_points.h"

// The classes that the module registers, with the numbers of their registration scripts. The build
// reads this list, too.
#define FOR_EACH_CLASS(CLASS) \
  CLASS(Deck, 101)            \
  CLASS(Check, 102)           \
  CLASS(Picture, 103)         \
  CLASS(Report, 104)

namespace automation {

/// These classes, and the type library of orv_tools.dll.
com::ModuleContents module_contents();

}  // namespace automation
