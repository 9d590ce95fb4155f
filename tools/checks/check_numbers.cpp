#include <algorithm>
#include <cmath>

#include "tools/checks/single_checks.h"
#include "tools/checks/statements.h"
#include "tools/deck/fields.h"
#include "tools/deck/kinds.h"

namespace checks {
namespace {

/// Whether a deck has another number in the place of this one.
bool is_rounded(double value) {
  // Most numbers have few digits, and a whole number below 2^53 has 16 at most.
  return std::trunc(value) != value && !deck::number_text(value).is_exact;
}

/// What a deck would say of the degrees of freedom: of a force its components, not its Magnitude.
void check_texts(const content::Table& table, Findings& findings) {
  if (std::ranges::find(deck::kKindNames, table.name, &deck::KindNames::table) ==
      deck::kKindNames.end()) {
    return;
  }
  std::vector<Statement> statements;
  for (std::size_t record = 0; record < table.size(); ++record) {
    read_statements(table, record, statements);
    for (const Statement& statement : statements) {
      if (std::isfinite(statement.value) && is_rounded(statement.value)) {
        findings.add(Code::too_long, table, record);
      }
    }
  }
}

}  // namespace

void check_numbers(const Subject& subject, Findings& findings) {
  for (const content::Table& table : subject.content.tables) {
    const std::size_t width = table.columns.size();
    for (std::size_t i = 0; i < table.values.size(); ++i) {
      if (!std::isfinite(table.values[i])) {
        findings.add(Code::not_finite, table, i / width);
      }
    }
    check_texts(table, findings);
  }
}

}  // namespace checks
