#pragma once

#include <string>
#include <vector>

#include "tools/checks/finding.h"

namespace checks {

/// Findings for people, one paragraph for each.
std::string text(const std::vector<Finding>& findings);

/// A number as people read it, with six digits.
std::string number_text(double value);

}  // namespace checks
