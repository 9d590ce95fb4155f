#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <string>

namespace checks {

/// The sum of the forces and moments of a set, a step or a selection.
struct Resultant {
  std::string of;  ///< the set's name, or "Step 2"
  int step = 0;    ///< 0: it is that of a set or a selection
  std::size_t records = 0;
  std::size_t left_out = 0;        ///< records without finite numbers, coordinates or known axes
  std::size_t with_amplitude = 0;  ///< records that count in full, and follow an amplitude
  std::array<double, 3> point{};   ///< about which the moment is taken
  std::array<double, 3> force{};
  std::array<double, 3> moment{};
  /// Sums of absolute values, by which rounding is told from what does not balance.
  double force_size = 0;
  double moment_size = 0;

  /// Adds a force that acts at a place.
  void add_force(const std::array<double, 3>& value, const std::array<double, 3>& at) {
    const std::array<double, 3> arm = {at[0] - point[0], at[1] - point[1], at[2] - point[2]};
    for (std::size_t i = 0; i < 3; ++i) {
      const std::size_t j = (i + 1) % 3;
      const std::size_t k = (i + 2) % 3;
      force.at(i) += value.at(i);
      force_size += std::abs(value.at(i));
      moment.at(i) += arm.at(j) * value.at(k) - arm.at(k) * value.at(j);
      moment_size += std::abs(arm.at(j) * value.at(k)) + std::abs(arm.at(k) * value.at(j));
    }
    ++records;
  }

  void add_moment(const std::array<double, 3>& value) {
    for (std::size_t i = 0; i < 3; ++i) {
      moment.at(i) += value.at(i);
      moment_size += std::abs(value.at(i));
    }
    ++records;
  }

  /// The force and moment with 0 for what is no more than the rounding of the sum.
  [[nodiscard]] std::array<double, 3> rounded_force() const { return rounded(force, force_size); }
  [[nodiscard]] std::array<double, 3> rounded_moment() const {
    return rounded(moment, moment_size);
  }

 private:
  static std::array<double, 3> rounded(std::array<double, 3> sum, double size) {
    for (double& component : sum) {
      if (std::abs(component) < 1e-12 * size) component = 0;
    }
    return sum;
  }
};

}  // namespace checks
