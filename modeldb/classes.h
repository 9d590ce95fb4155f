#pragma once

#include "com/entry_points.h"

// The classes that the module registers, with the numbers of their registration scripts. The build
// reads this list, too.
#define FOR_EACH_CLASS(CLASS, SETS) \
  CLASS(ModelDatabase, 101)         \
  CLASS(Vertex, 102)                \
  CLASS(LoadSet, 103)               \
  SETS(LoadSets, 104)               \
  CLASS(ConstraintSet, 105)         \
  SETS(ConstraintSets, 106)         \
  CLASS(DesignScenario, 107)        \
  SETS(DesignScenarios, 108)        \
  CLASS(Vertices, 109)

namespace modeldb {

/// These classes, and the type library of orv_modeldb.dll.
com::ModuleContents module_contents();

}  // namespace modeldb
