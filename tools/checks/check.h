#pragma once

#include <vector>

#include "tools/checks/finding.h"
#include "tools/checks/subject.h"

namespace checks {

/// What there is to say of a model before it is solved, the worst first. docs/checks.md lists all
/// codes.
std::vector<Finding> check(const Subject& subject);

}  // namespace checks
