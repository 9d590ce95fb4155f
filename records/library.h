#pragma once

#include <orv_node.h>

#include "com/type_info.h"

namespace orv {

/// The type library that describes every record and collection.
inline const com::TypeLibrary kLibrary{LIBID_ORV_NODELib, 1, 0, 0x409};

}  // namespace orv
