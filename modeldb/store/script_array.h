#pragma once

#include <span>

#include "com/variant.h"

namespace modeldb {

/// Numbers as an array of variants with the lower bound 0, the only array that VBScript can index.
com::Variant script_array(std::span<const long> numbers);

}  // namespace modeldb
