#include "tools/model/subject.h"

#include "tools/checks/schedule.h"
#include "tools/model/axes.h"
#include "tools/model/content.h"
#include "tools/text/failure.h"

namespace model {

CheckedModel::CheckedModel(Database& database)
    : content_(read_content(database)),
      origin_(read_origin(database)),
      subject_{.content = content_,
               .source = origin_.source,
               .steps = static_cast<int>(origin_.steps.size()),
               .axes = axes_of(origin_.systems, content_.vertices)} {}

void require_step(const checks::Subject& subject, int step) {
  const int steps = checks::schedule_of(subject).steps;
  if (0 <= step && step <= steps) return;
  text::fail(
      text::kInvalidArgument,
      "The model has no step " + std::to_string(step) +
          (steps == 1 ? ". It has one step, 1" : ". Its steps are 1 to " + std::to_string(steps)) +
          "; 0 is the part before the first.");
}

}  // namespace model
