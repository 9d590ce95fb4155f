#include <algorithm>

#include "tools/checks/single_checks.h"
#include "tools/checks/statements.h"

namespace checks {
namespace {

bool has(const content::Table& table, const char* column) {
  return std::ranges::find(table.columns, column) != table.columns.end();
}

bool is_null(const content::Vector& v) { return v[0] == 0 && v[1] == 0 && v[2] == 0; }

void check_direction(const content::Table& table, std::size_t record, Findings& findings) {
  const content::Row row(table, record);
  bool uses_vector = has(table, "Vx");
  if (has(table, "Direction")) {
    const double direction = row["Direction"];
    uses_vector = direction == 3;
    if (direction != 0 && direction != 1 && direction != 2 && direction != 3) {
      findings.add(Code::no_such_direction, table, record);
    }
  }
  if (uses_vector && is_null(row.vector("Vx", "Vy", "Vz"))) {
    findings.add(Code::no_direction, table, record);
  }
}

}  // namespace

void check_effects(const Subject& subject, Findings& findings) {
  std::vector<Statement> statements;
  for (const content::Table& table : subject.content.tables) {
    const bool is_support =
        table.name == "NodalBoundaryConditions" || table.name == "NodalRigidBoundaries";
    // Of temperatures and voltages a stiffness of 0 is what a new record has.
    const bool has_stiffness = has(table, "Stiffness") && has(table, "IsRotation");
    for (std::size_t record = 0; record < table.size(); ++record) {
      check_direction(table, record, findings);
      if (has_stiffness && content::Row(table, record)["Stiffness"] == 0) {
        findings.add(Code::no_stiffness, table, record);
      }
      if (!is_support) continue;
      read_statements(table, record, statements);
      if (statements.empty()) findings.add(Code::holds_nothing, table, record);
    }
  }
}

}  // namespace checks
