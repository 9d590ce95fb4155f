#pragma once

#include "com/type_info.h"

namespace orv {

/// The type library that describes every record and collection. The module whose classes they are
/// defines it.
extern const com::TypeLibrary kLibrary;

}  // namespace orv
