#include "tools/content/loads.h"

#include <algorithm>
#include <cmath>

namespace content {

double Row::operator[](std::string_view column) const {
  const auto found = std::ranges::find(table_->columns, column);
  if (found == table_->columns.end()) return 0;
  return table_->values[record_ * table_->columns.size() + (found - table_->columns.begin())];
}

Vector Row::vector(std::string_view x, std::string_view y, std::string_view z) const {
  return {(*this)[x], (*this)[y], (*this)[z]};
}

std::optional<Vector> load_vector(const Table& table, std::size_t record, const LocalAxes& axes) {
  const Row row(table, record);
  Vector v = row.vector("Vx", "Vy", "Vz");
  // Divided by the largest first: the squares of very small or large components are no numbers.
  const double largest = std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])});
  if (!(largest > 0)) return Vector{};
  for (double& component : v) component /= largest;
  const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
  for (double& component : v) component *= row["Magnitude"] / length;

  const auto system = static_cast<Key>(row["CoordinateSystemID"]);
  if (system == 0) return v;
  const auto local = axes ? axes(system, table.vertices[record]) : std::nullopt;
  if (!local) return std::nullopt;
  Vector global{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    for (std::size_t i = 0; i < 3; ++i) global.at(i) += v.at(axis) * local->at(axis).at(i);
  }
  return global;
}

}  // namespace content
