#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace checks {

/// The sum of the forces and moments of a set, a step or a selection.
struct Resultant {
  std::string of;  ///< the set's name, or "Step 2"
  std::size_t records = 0;
  std::array<double, 3> point{};  ///< about which the moment is taken
  std::array<double, 3> force{};
  std::array<double, 3> moment{};

  /// Adds a force that acts at a place.
  void add_force(const std::array<double, 3>& value, const std::array<double, 3>& at) {
    const std::array<double, 3> arm = {at[0] - point[0], at[1] - point[1], at[2] - point[2]};
    for (std::size_t i = 0; i < 3; ++i) {
      const std::size_t j = (i + 1) % 3;
      const std::size_t k = (i + 2) % 3;
      force.at(i) += value.at(i);
      moment.at(i) += arm.at(j) * value.at(k) - arm.at(k) * value.at(j);
    }
    ++records;
  }

  void add_moment(const std::array<double, 3>& value) {
    for (std::size_t i = 0; i < 3; ++i) moment.at(i) += value.at(i);
    ++records;
  }
};

}  // namespace checks
