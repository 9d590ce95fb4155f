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

/// What acts in a step, and which records said it: a table, or an array of JSON objects, one a
/// line.
std::string acting_text(const Subject& subject, int step);
std::string acting_json(const Subject& subject, int step);

}  // namespace checks
