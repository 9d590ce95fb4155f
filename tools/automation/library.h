#pragma once

#include <orv_tools.h>

#include "com/type_info.h"

namespace automation {

/// The type library that describes the tools.
inline const com::TypeLibrary kLibrary{LIBID_ORV_TOOLSLib, 1, 0, 0x409};

}  // namespace automation
