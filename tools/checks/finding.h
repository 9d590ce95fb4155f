#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/content/content.h"

namespace checks {

enum class Severity : std::uint8_t {
  note,     ///< worth knowing
  warning,  ///< it may be meant so
  error,    ///< the model does not do what it says, or cannot be solved
};

/// Something that a check found in a model. Records with the same fault in the same set and step
/// are one finding.
struct Finding {
  std::string code;  ///< the same for the same sort of finding, for programs: "no-direction"
  Severity severity = Severity::warning;
  std::string what;    ///< a sentence
  std::string where;   ///< records, sets or nodes: "NodalForce 12 on node 7"
  std::string advice;  ///< a sentence

  std::string table;                  ///< of the records or sets; may be empty
  std::vector<content::Key> records;  ///< keys of records, or of sets if `table` is one of sets
  std::vector<content::Key> nodes;    ///< of the records, one for each
  std::string set;                    ///< name of the set that the records are in; may be empty
  int step = -1;                      ///< 0: before the first; -1: in no step in particular
};

}  // namespace checks
