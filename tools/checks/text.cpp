#include "tools/checks/text.h"

#include <array>
#include <cstdio>

#include "tools/checks/json.h"

namespace checks {
std::string number_text(double value) {
  std::array<char, 32> digits;
  std::snprintf(digits.data(), digits.size(), "%.6g", value == 0 ? 0 : value);
  return digits.data();
}

std::string text(const std::vector<Finding>& findings) {
  std::string text;
  for (const Finding& finding : findings) {
    text.append(name_of(finding.severity)).append(" ").append(finding.code).append(": ");
    text += finding.what + "\n  where: " + finding.where + "\n  do:    " + finding.advice + "\n";
  }
  return text;
}

}  // namespace checks
