#include "tools/checks/statements.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/content/loads.h"
#include "tools/deck/kinds.h"

namespace checks {
namespace {

class Reader {
 public:
  Reader(const content::Table& table, std::size_t record, std::vector<Statement>& statements)
      : table_(table), row_(table, record), statements_(statements) {
    statement_.node = table.vertices[record];
    // 1 is what a new record has, and 0 what an old one may have; both mean none.
    const double multiplier = row_["MultiplierTableID"];
    statement_.multiplier = multiplier > 1 ? static_cast<content::Key>(multiplier) : 0;
  }

  void read() {
    if (has_forces(table_)) {
      read_force();
    } else if (table_.name == "NodalBoundaryConditions") {
      read_held({"Tx", "Ty", "Tz", "Rx", "Ry", "Rz"}, 1);
    } else if (table_.name == "NodalRigidBoundaries") {
      read_held({"FixedX", "FixedY", "FixedZ"}, row_["IsRotation"] != 0 ? 4 : 1);
    } else if (table_.name == "NodalPrescribedDisplacements") {
      read_displacement();
    } else if (table_.name == "NodalAppliedTemperatures") {
      put(Effect::moved, deck::kTemperatureFreedom, row_["Magnitude"]);
    } else if (table_.name == "NodalTemperatures") {
      put(Effect::temperature, 0, row_["Magnitude"]);
    } else if (table_.name == "NodalHeatSources") {
      put(Effect::heat, deck::kTemperatureFreedom, row_["Magnitude"]);
    } else {
      put(Effect::other, 0, 0);
    }
  }

 private:
  void put(Effect effect, int freedom, double value) {
    statement_.effect = effect;
    statement_.freedom = static_cast<std::uint8_t>(freedom);
    statement_.value = value;
    statements_.push_back(statement_);
  }

  void read_force() {
    const content::Vector v = row_.vector("Vx", "Vy", "Vz");
    const double length = std::hypot(v[0], v[1], v[2]);
    if (!(length > 0) || !std::isfinite(length)) return;
    statement_.system = static_cast<content::Key>(row_["CoordinateSystemID"]);
    const int first = table_.name == "NodalMoments" ? 4 : 1;
    for (int axis = 0; axis < 3; ++axis) {
      const double component = v.at(static_cast<std::size_t>(axis));
      if (component != 0)
        put(Effect::force, first + axis, row_["Magnitude"] * (component / length));
    }
  }

  void read_held(std::initializer_list<const char*> flags, int freedom) {
    for (const char* const flag : flags) {
      if (row_[flag] != 0) put(Effect::held, freedom, 0);
      ++freedom;
    }
  }

  void read_displacement() {
    const int first = row_["IsRotation"] != 0 ? 4 : 1;
    const double direction = row_["Direction"];
    if (direction == 0 || direction == 1 || direction == 2) {
      put(Effect::moved, first + static_cast<int>(direction), row_["Magnitude"]);
      return;
    }
    const content::Vector v = row_.vector("Vx", "Vy", "Vz");
    if (std::ranges::count_if(v, [](double component) { return component != 0; }) != 1) {
      put(Effect::other, 0, 0);
      return;
    }
    for (int axis = 0; axis < 3; ++axis) {
      const double component = v.at(static_cast<std::size_t>(axis));
      if (component == 0) continue;
      put(Effect::moved, first + axis, component < 0 ? -row_["Magnitude"] : row_["Magnitude"]);
    }
  }

  const content::Table& table_;
  content::Row row_;
  std::vector<Statement>& statements_;
  Statement statement_;
};

}  // namespace

void read_statements(const content::Table& table, std::size_t record,
                     std::vector<Statement>& statements) {
  statements.clear();
  Reader(table, record, statements).read();
}

bool has_forces(const content::Table& table) {
  return table.name == "NodalForces" || table.name == "NodalMoments";
}

}  // namespace checks
