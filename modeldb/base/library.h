#pragma once

#include <orv_modeldb.h>

#include "com/type_info.h"

namespace modeldb {

/// The type library that describes the model database and its objects.
inline const com::TypeLibrary kLibrary{LIBID_ORV_MODELDBLib, 1, 0, 0x409};

}  // namespace modeldb
