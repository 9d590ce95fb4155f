#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

#include "tools/content/content.h"

namespace content {

using Vector = std::array<double, 3>;

/// The axes of a coordinate system at a vertex, each of length 1, in the global system. Nothing, if
/// the system is not known.
using LocalAxes =
    std::function<std::optional<std::array<Vector, 3>>(Key coordinate_system, Key vertex)>;

/// The axes of a vertex's degrees of freedom, likewise. Nothing, if they are those of the global
/// system.
using NodeAxes = std::function<std::optional<std::array<Vector, 3>>(Key vertex)>;

/// Reads the values of a table's records by the names of its columns.
class Row {
 public:
  Row(const Table& table, std::size_t record) : table_(&table), record_(record) {}

  /// 0 if the table has no such column.
  [[nodiscard]] double operator[](std::string_view column) const;
  [[nodiscard]] Vector vector(std::string_view x, std::string_view y, std::string_view z) const;

 private:
  const Table* table_;
  std::size_t record_;
};

/// The force or moment vector of a record in the global system, Magnitude × V / |V|. It is 0
/// without a direction, and nothing if the axes of the record's coordinate system are not known.
std::optional<Vector> load_vector(const Table& table, std::size_t record, const LocalAxes& axes);

}  // namespace content
