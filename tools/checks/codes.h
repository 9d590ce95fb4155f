#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "tools/checks/finding.h"

namespace checks {

/// The sorts of findings, in the order in which they are told.
enum class Code : std::uint8_t {
  not_finite,
  no_vertex,
  no_coordinates,
  no_direction,
  no_such_direction,
  dead_set_link,
  dead_amplitude_link,
  dead_system_link,
  no_stiffness,
  two_amplitudes,
  no_such_step,
  not_before_steps,
  not_initial,
  no_step,
  no_support,
  load_on_support,
  load_twice,
  in_two_sets,
  held_and_moved,
  moved_twice,
  holds_nothing,
  no_set,
  empty_set,
  support_twice,
  too_long,
};

/// What there is to say of a sort of finding.
struct CodeWords {
  Code code;
  std::string_view name;  ///< stable, for programs
  Severity severity;
  std::string_view one;   ///< follows "1 NodalForce", or the step
  std::string_view many;  ///< follows "3 NodalForces"
  std::string_view advice;
};

/// All of them, in their order.
std::span<const CodeWords> all_codes();
const CodeWords& words_of(Code code);

}  // namespace checks
