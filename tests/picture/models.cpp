#include "tests/picture/models.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "tests/kinds/expected.h"

namespace tests {
namespace {

using Columns = std::vector<std::string>;

const Columns load = {"Magnitude", "Vx", "Vy", "Vz", "MultiplierTableID", "CoordinateSystemID"};
const Columns magnitude = {"Magnitude"};

const std::map<std::string, Columns> columns = {
    {"NodalBoundaryConditions", {"Tx", "Ty", "Tz", "Rx", "Ry", "Rz"}},
    {"NodalForces", load},
    {"NodalMoments", load},
    {"NodalCharges", magnitude},
    {"NodalCurrents", magnitude},
    {"NodalTemperatures", magnitude},
    {"NodalVoltages", magnitude},
    {"NodalLumpedMasses", {"Wx", "Wy", "Wz", "Mx", "My", "Mz", "UseMassUnits"}},
    {"NodalPrescribedVelocities",
     {"MagnitudeX", "MagnitudeY", "MagnitudeZ", "UseX", "UseY", "UseZ"}},
    {"NodalPrescribedDisplacements", {"IsRotation", "Direction", "Vx", "Vy", "Vz", "Magnitude"}},
    {"NodalAppliedTemperatures", {"Magnitude", "Stiffness"}},
    {"NodalAppliedVoltages", {"Magnitude", "Stiffness"}},
    {"NodalRigidBoundaries", {"FixedX", "FixedY", "FixedZ", "Stiffness", "IsRotation"}},
    {"NodalElasticBoundaries", {"Vx", "Vy", "Vz", "Stiffness", "IsRotation"}},
    {"NodalDisplacementBoundaries", {"Magnitude", "Vx", "Vy", "Vz", "Stiffness", "IsRotation"}},
    {"NodalProbes", {"Type", "SeparateWindow"}},
    {"NodalHeatSources", {"Magnitude"}},
    {"NodalPrescribedInOutlets", {"Type"}},
};

/// A picture of a column that the kind does not have would show nothing of a real model.
void require_column(const std::string& table, const std::string& column) {
  const auto kind = std::ranges::find(expected_kinds(), table, &ExpectedKind::collection);
  if (std::ranges::find(kind->columns, column, &ExpectedColumn::name) == kind->columns.end()) {
    throw std::logic_error(table + " have no column " + column);
  }
}

}  // namespace

content::Table table(const std::string& name) {
  content::Table table;
  table.name = name;
  table.sets = "LoadSets";
  table.columns = columns.at(name);
  for (const std::string& column : table.columns) require_column(name, column);
  return table;
}

void add(content::Table& table, content::Key vertex, const std::vector<double>& values,
         const std::vector<content::Key>& sets) {
  table.ids.push_back(static_cast<content::Key>(table.ids.size()) + 1);
  table.vertices.push_back(vertex);
  table.values.insert(table.values.end(), values.begin(), values.end());
  table.values.resize(table.ids.size() * table.columns.size(), 0);
  table.set_ids.push_back(sets);
}

content::Content all_kinds() {
  const std::map<std::string, std::vector<std::vector<double>>> records = {
      {"NodalBoundaryConditions", {{1, 1, 1, 1, 1, 1}, {0, 0, -1, 0, 0, 0}, {0, 0, 0, 0, 0, 0}}},
      {"NodalForces", {{250, 0, 0, -1}, {-100, 1, 0, 0}, {0, 1, 0, 0}, {5, 0, 0, 0}}},
      {"NodalMoments", {{3, 0, 1, 0}}},
      {"NodalCharges", {{1}, {-1}}},
      {"NodalCurrents", {{2}, {-2}}},
      {"NodalTemperatures", {{20}, {400}}},
      {"NodalVoltages", {{230}}},
      {"NodalLumpedMasses", {{1, 1, 1}}},
      {"NodalPrescribedVelocities", {{1, -2, 0, 1, 1, 0}, {0, 0, 0, 0, 0, 0}}},
      {"NodalPrescribedDisplacements", {{0, 2, 0, 0, 0, -0.5}, {1, 3, 1, 1, 0, 2}, {0, 7}}},
      {"NodalAppliedTemperatures", {{300}}},
      {"NodalAppliedVoltages", {{12}}},
      {"NodalRigidBoundaries", {{1, 0, 1, 1e10, 0}, {0, 1, 0, 1e10, 1}}},
      {"NodalElasticBoundaries", {{0, 0, 1, 5, 0}, {1, 0, 0, 5, 1}}},
      {"NodalDisplacementBoundaries", {{0.1, 0, 1, 0, 1e10, 0}}},
      {"NodalProbes", {{1, 0}}},
      {"NodalHeatSources", {{5}, {-5}}},
      {"NodalPrescribedInOutlets", {{1}}},
  };
  content::Content content;
  content::Key node = 0;
  for (const auto& [name, rows] : records) {
    content::Table table = tests::table(name);
    for (const auto& row : rows) {
      node = node % 8 + 1;
      add(table, node, row);
    }
    content.tables.push_back(std::move(table));
  }
  return content;
}

}  // namespace tests
