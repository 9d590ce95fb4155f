#pragma once

#include "tools/checks/findings.h"
#include "tools/checks/schedule.h"

/// The checks, each in a file of its own.
namespace checks {

/// Values that are no finite numbers, or that a deck cannot hold.
void check_numbers(const Subject& subject, Findings& findings);
/// Records without a vertex, or on one without coordinates.
void check_vertices(const Subject& subject, Findings& findings);
/// Sets, amplitudes and coordinate systems that the model does not have.
void check_links(const Subject& subject, Findings& findings);
/// Forces without a direction, supports that hold nothing, stiffness of 0.
void check_effects(const Subject& subject, Findings& findings);
/// Empty sets, records in no set, and sets that never act.
void check_sets(const Subject& subject, const Schedule& schedule, Findings& findings);
/// What meets on one degree of freedom in a step, and steps without supports.
void check_steps(const Subject& subject, const Schedule& schedule, Findings& findings);

}  // namespace checks
