#pragma once

#include <string>
#include <vector>

#include "tools/checks/finding.h"
#include "tools/checks/resultant.h"
#include "tools/checks/subject.h"

namespace checks {

/// Findings and resultants for people; one paragraph for each finding, one line for each resultant.
std::string text(const std::vector<Finding>& findings);
std::string text(const std::vector<Resultant>& resultants);

/// What acts in a step, and which records said it: a table; empty, if nothing acts.
std::string acting_text(const Subject& subject, int step);

/// A number as people read it, with six digits.
std::string number_text(double value);

}  // namespace checks
