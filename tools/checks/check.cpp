#include "tools/checks/check.h"

#include "tools/checks/single_checks.h"

namespace checks {

std::vector<Finding> check(const Subject& subject) {
  Findings findings;
  const Schedule schedule = schedule_of(subject);
  check_numbers(subject, findings);
  check_vertices(subject, findings);
  check_links(subject, findings);
  check_effects(subject, findings);
  check_sets(subject, schedule, findings);
  check_steps(subject, schedule, findings);
  return findings.finish();
}

}  // namespace checks
