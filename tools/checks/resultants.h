#pragma once

#include <array>
#include <optional>
#include <vector>

#include "tools/checks/resultant.h"
#include "tools/checks/statements.h"
#include "tools/checks/subject.h"

namespace checks {

/// The forces and moments of each load set that has any, whatever acts in its step, and those that
/// act in each step, with what earlier steps left behind. Steps follow the sets, named "Step 1".
/// Amplitudes count as 1. Moments are about the point.
std::vector<Resultant> resultants_of(const Subject& subject,
                                     const std::array<double, 3>& about = {});

/// A force or moment along the axes of the global system; nothing, if those of its own are not
/// known.
std::optional<content::Vector> global_vector(const Subject& subject, const Statement& force);

}  // namespace checks
