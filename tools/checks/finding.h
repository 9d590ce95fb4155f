#pragma once

#include <cstdint>
#include <string>

namespace checks {

enum class Severity : std::uint8_t {
  note,     ///< worth knowing
  warning,  ///< it may be meant so
  error,    ///< the model does not do what it says, or cannot be solved
};

/// Something that a check found in a model.
struct Finding {
  std::string code;  ///< the same for the same sort of finding, for programs: "force-no-direction"
  Severity severity = Severity::warning;
  std::string what;    ///< a sentence
  std::string where;   ///< records, sets or nodes: "NodalForce 12 on node 7"
  std::string advice;  ///< a sentence
};

}  // namespace checks
