#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/checks/subject.h"

namespace checks {

/// A record that said something of a degree of freedom.
struct ActingRecord {
  std::string table;
  content::Key id = 0;  ///< 0: not saved yet
  std::string name;     ///< "NodalForce 12"
  std::string set;      ///< the set through which it acts; may be empty
};

/// What acts on a degree of freedom in a step, as users are told.
struct StepAction {
  content::Key node = 0;
  int freedom = 0;         ///< from 1; 0 where it concerns none or several
  std::string_view what;   ///< force, heat, held, moved, temperature or other
  bool has_value = false;  ///< nothing is to be said of what is held, and of others
  double value = 0;
  content::Key system = 0;  ///< coordinate system of a force; 0: the global one
  std::string amplitude;    ///< its name; empty: none
  int load_case = 1;
  int step = 0;  ///< in which it was said
  std::vector<ActingRecord> records;
};

/// Tells what acts in a step of the model, by the rules of `Acting`.
void each_action(const Subject& subject, int step,
                 const std::function<void(const StepAction&)>& use);

/// "node 5, freedom 2: force -6, said in step 1 by NodalForce 1 in "Wind""
std::string sentence_of(const StepAction& action);

/// For programs: an array of JSON objects, one a line; docs/checks.md describes their members.
std::string actions_json(const Subject& subject, int step);

}  // namespace checks
