#pragma once

#include <string>
#include <vector>

#include "tools/checks/finding.h"
#include "tools/checks/resultant.h"

namespace checks {

/// Findings and resultants for programs: a JSON object, whose members docs/checks.md describes.
std::string json(const std::vector<Finding>& findings, const std::vector<Resultant>& resultants);

/// "note", "warning" or "error".
std::string_view name_of(Severity severity);

}  // namespace checks
