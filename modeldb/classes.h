#pragma once

#include <span>

#include "com/class_table.h"

namespace modeldb {

/// The classes that the module registers.
std::span<com::ClassEntry> classes();

/// ADO's class that the module stands in for while a model is open; never registered.
std::span<com::ClassEntry> ado_classes();

}  // namespace modeldb
