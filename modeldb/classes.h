#pragma once

#include <span>

#include "com/class_table.h"

namespace modeldb {

/// The classes that the module registers.
std::span<com::ClassEntry> classes();

}  // namespace modeldb
