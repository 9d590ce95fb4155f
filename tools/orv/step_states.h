#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>

#include "com/error.h"
#include "com/variant.h"
#include "tools/orv/model_file.h"

namespace orv {

/// Which steps of a model's history are undone, to tell what a command has changed.
class StepStates {
 public:
  explicit StepStates(const ModelFile& model);

  /// A line for each step that is undone or redone since, the last first where they are undone.
  void print_changes(std::ostream& out, const StepStates& before) const;

 private:
  struct State {
    std::string name;
    bool is_undone;
  };
  std::map<long, State> states_;  // by number
};

inline com::Variant step_argument(const std::optional<long>& step) {
  return step ? com::Variant(*step) : com::Variant::omitted();
}

}  // namespace orv
