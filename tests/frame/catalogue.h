#pragma once

#include <string>
#include <vector>

#include "tests/kinds/expected.h"

// What the type library must say, as catalogue.txt states it.

namespace catalogue {

/// Members of the interfaces of a kind in the order of the virtual table, each as one line such as
/// `1 get ID([out,retval] long* pVal) hidden: Internal record number.`
std::vector<std::string> record_members(const ExpectedKind& kind);
std::vector<std::string> collection_members(const ExpectedKind& kind);

}  // namespace catalogue
