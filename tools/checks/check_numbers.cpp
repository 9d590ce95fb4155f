#include <cmath>

#include "tools/checks/single_checks.h"
#include "tools/deck/fields.h"

namespace checks {
namespace {

/// Whether a deck has another number in the place of this one.
bool is_rounded(double value) {
  // Most numbers have few digits, and a whole number below 2^53 has 16 at most.
  return std::trunc(value) != value && !deck::number_text(value).is_exact;
}

}  // namespace

void check_numbers(const Subject& subject, Findings& findings) {
  for (const content::Table& table : subject.content.tables) {
    const std::size_t width = table.columns.size();
    for (std::size_t i = 0; i < table.values.size(); ++i) {
      if (!std::isfinite(table.values[i])) {
        findings.add(Code::not_finite, table, i / width);
      } else if (table.columns[i % width] == "Magnitude" && is_rounded(table.values[i])) {
        findings.add(Code::too_long, table, i / width);
      }
    }
  }
}

}  // namespace checks
