#pragma once

#include "tools/checks/subject.h"
#include "tools/model/database.h"
#include "tools/model/origin.h"

namespace model {

/// What the checks look at, read from a model.
class CheckedModel {
 public:
  explicit CheckedModel(Database& database);
  CheckedModel(const CheckedModel&) = delete;
  CheckedModel& operator=(const CheckedModel&) = delete;

  [[nodiscard]] const checks::Subject& subject() const { return subject_; }
  /// Whether the deck that it came from has coordinate systems.
  [[nodiscard]] bool has_systems() const { return !origin_.systems.empty(); }

 private:
  content::Content content_;
  Origin origin_;
  checks::Subject subject_;
};

/// Raises kInvalidArgument, with a sentence, unless the model has that step; 0 is the part before
/// the first.
void require_step(const checks::Subject& subject, int step);

}  // namespace model
