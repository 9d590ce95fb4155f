#include "tools/picture/kinds.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/picture/glyphs.h"

namespace picture {
namespace {

using content::Row;
using content::Table;

// Bits of variants; the lowest three are axes.
constexpr int rotation = 8;
constexpr int turned = 64;  // axes of the node's own

Point to_point(const content::Vector& v) { return {v[0], v[1], v[2]}; }

Point direction_of(const Row& row) {
  const Point v = to_point(row.vector("Vx", "Vy", "Vz"));
  const double largest = v.cwiseAbs().maxCoeff();
  return largest > 0 ? Point((v / largest).normalized()) : Point::Zero();
}

int axes_of(const Row& row, std::string_view x, std::string_view y, std::string_view z) {
  return (row[x] != 0 ? 1 : 0) | (row[y] != 0 ? 2 : 0) | (row[z] != 0 ? 4 : 0);
}

int rotation_of(const Row& row) { return row["IsRotation"] != 0 ? rotation : 0; }

std::string axis_names(int axes) {
  std::string text;
  for (int i = 0; i < 3; ++i) {
    if ((axes >> i & 1) != 0) text += "xyz"[i];
  }
  return text.empty() ? text : ' ' + text;
}

std::string no_name(int) { return {}; }
std::string rotation_name(int variant) { return variant == rotation ? ", rotation" : ""; }

// Supports stand outside the body, and where nobody knows it, below.
Point side_of(int axis, const Setting& setting) {
  const Point& along = setting.axes.at(static_cast<std::size_t>(axis));
  return along * (setting.outward.dot(along) > 0.1 ? 1 : -1);
}

// Reading -----------------------------------------------------------------------------------------

std::optional<Mark> read_load(const Table& table, std::size_t record, const Options& options) {
  const auto vector = content::load_vector(table, record, options.axes);
  if (!vector) return {};
  return Mark{0, to_point(*vector), Row(table, record)["Magnitude"]};
}

std::optional<Mark> read_value(const Table& table, std::size_t record, const Options&) {
  return Mark{0, Point::Zero(), Row(table, record)["Magnitude"]};
}

std::optional<Mark> read_type(const Table& table, std::size_t record, const Options&) {
  return Mark{0, Point::Zero(), Row(table, record)["Type"]};
}

std::optional<Mark> read_support(const Table& table, std::size_t record, const Options& options) {
  const Row row(table, record);
  const int held = axes_of(row, "Tx", "Ty", "Tz") | axes_of(row, "Rx", "Ry", "Rz") << 3;
  const bool is_turned = options.node_axes && options.node_axes(table.vertices[record]);
  return Mark{held == 0 || !is_turned ? held : held | turned, Point::Zero(), 0};
}

std::optional<Mark> read_rigid(const Table& table, std::size_t record, const Options&) {
  const Row row(table, record);
  return Mark{axes_of(row, "FixedX", "FixedY", "FixedZ") | rotation_of(row), Point::Zero(),
              row["Stiffness"]};
}

std::optional<Mark> read_elastic(const Table& table, std::size_t record, const Options&) {
  const Row row(table, record);
  return Mark{rotation_of(row), direction_of(row), row["Stiffness"]};
}

std::optional<Mark> read_moved(const Table& table, std::size_t record, const Options&) {
  const Row row(table, record);
  return Mark{rotation_of(row), direction_of(row) * row["Magnitude"], row["Magnitude"]};
}

std::optional<Mark> read_displacement(const Table& table, std::size_t record,
                                      const Options& options) {
  const Row row(table, record);
  const double direction = row["Direction"];
  Point along = Point::Zero();
  if (direction == 3) along = direction_of(row);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (direction == static_cast<double>(axis)) {
      along = axes_at(table.vertices[record], options).at(axis);
    }
  }
  return Mark{rotation_of(row), along * row["Magnitude"], row["Magnitude"]};
}

std::optional<Mark> read_velocity(const Table& table, std::size_t record, const Options&) {
  const Row row(table, record);
  const Point v = to_point(row.vector("MagnitudeX", "MagnitudeY", "MagnitudeZ"));
  return Mark{axes_of(row, "UseX", "UseY", "UseZ"), v, v.norm()};
}

std::optional<Mark> read_mass(const Table& table, std::size_t record, const Options&) {
  const Row row(table, record);
  return Mark{0, Point::Zero(), std::max({row["Wx"], row["Wy"], row["Wz"]})};
}

// Drawing -----------------------------------------------------------------------------------------

Drawing draw_arrow(const Mark&, const Setting& setting, int heads, bool is_open) {
  if (setting.arrow.isZero(0)) return glyphs::nothing();
  return glyphs::arrow(setting.arrow, {.heads = heads,
                                       .is_open = is_open,
                                       .has_bar = is_open,
                                       .ends_at_node = setting.ends_at_node});
}

Drawing draw_force(const Mark& mark, const Setting& s) { return draw_arrow(mark, s, 1, false); }
Drawing draw_moment(const Mark& mark, const Setting& s) { return draw_arrow(mark, s, 2, false); }
Drawing draw_displacement(const Mark& mark, const Setting& s) {
  return draw_arrow(mark, s, mark.variant == rotation ? 2 : 1, true);
}

Drawing draw_held(int translations, int rotations, bool has_block, const Setting& setting) {
  Drawing drawing;
  for (int axis = 0; axis < 3; ++axis) {
    const Point side = setting.view.project(side_of(axis, setting));
    if ((translations >> axis & 1) != 0) {
      glyphs::add_cone(side, drawing);
      if (has_block) glyphs::add_block(side, drawing);
    }
    if ((rotations >> axis & 1) != 0) {
      glyphs::add_ring(side, 0.45, drawing);
      if (has_block) glyphs::add_block(side, drawing);
    }
  }
  return translations == 0 && rotations == 0 ? glyphs::nothing() : drawing;
}

Drawing draw_support(const Mark& mark, const Setting& setting) {
  return draw_held(mark.variant & 7, mark.variant >> 3 & 7, false, setting);
}

// Decks have no such kind, and so no axes of a node for it.
Drawing draw_rigid(const Mark& mark, const Setting& setting) {
  const int axes = mark.variant & 7;
  const bool is_rotation = (mark.variant & rotation) != 0;
  return draw_held(is_rotation ? 0 : axes, is_rotation ? axes : 0, true, setting);
}

void add_ground_spring(const Mark& mark, const Point& direction, const Setting& setting,
                       Drawing& drawing) {
  const bool is_outward = setting.outward.dot(direction) > 0.1;
  const Point side = setting.view.project(is_outward ? direction : Point(-direction));
  glyphs::add_spring(side, drawing);
  if (mark.variant == rotation) glyphs::add_ring(side, 0.45, drawing);
}

Drawing draw_elastic(const Mark& mark, const Setting& setting) {
  if (mark.vector.isZero(0)) return glyphs::nothing();
  Drawing drawing;
  add_ground_spring(mark, mark.vector, setting, drawing);
  return drawing;
}

// The spring stands against the arrow, so that both can be seen.
Drawing draw_moved(const Mark& mark, const Setting& setting) {
  if (setting.arrow.isZero(0)) return glyphs::nothing();
  Drawing drawing = draw_arrow(mark, setting, mark.variant == rotation ? 2 : 1, true);
  const Point along = mark.vector.normalized();
  glyphs::add_spring(setting.view.project(setting.ends_at_node ? along : Point(-along)), drawing);
  return drawing;
}

Drawing draw_velocity(const Mark& mark, const Setting& setting) {
  if (mark.variant == 0) return glyphs::nothing();
  Drawing drawing;
  for (int axis = 0; axis < 3; ++axis) {
    if ((mark.variant >> axis & 1) == 0) continue;
    const Point along = Point::Unit(axis) * (mark.vector[axis] < 0 ? -1.3 : 1.3);
    glyphs::add_velocity(setting.view.project(along), drawing);
  }
  return drawing;
}

Drawing draw_mass(const Mark&, const Setting&) { return glyphs::mass(); }
Drawing draw_temperature(const Mark&, const Setting&) { return glyphs::thermometer(false); }
Drawing draw_applied_temperature(const Mark&, const Setting&) { return glyphs::thermometer(true); }
Drawing draw_heat(const Mark& mark, const Setting&) { return glyphs::flame(mark.value < 0); }
Drawing draw_voltage(const Mark&, const Setting&) { return glyphs::bolt(false); }
Drawing draw_applied_voltage(const Mark&, const Setting&) { return glyphs::bolt(true); }
Drawing draw_current(const Mark& mark, const Setting&) { return glyphs::current(mark.value < 0); }
Drawing draw_charge(const Mark& mark, const Setting&) { return glyphs::charge(mark.value < 0); }
Drawing draw_probe(const Mark&, const Setting&) { return glyphs::probe(); }
Drawing draw_in_outlet(const Mark&, const Setting&) { return glyphs::in_outlet(); }

// Names -------------------------------------------------------------------------------------------

std::string support_name(int variant) {
  const std::string translations = axis_names(variant & 7);
  const std::string rotations = axis_names(variant >> 3 & 7);
  const std::string own = (variant & turned) != 0 ? " (local)" : "";
  if (variant == 0) return " that holds nothing";
  if (rotations.empty()) return translations + own;
  return translations + (translations.empty() ? " rotation" : ", rotation") + rotations + own;
}

std::string rigid_name(int variant) {
  return ((variant & rotation) != 0 ? ", rotation" : "") + axis_names(variant & 7);
}

constexpr std::array kinds = {
    Kind{"NodalBoundaryConditions", "NodalBoundaryCondition", "Support", "#00796b", false, false,
         false, 0.62, read_support, support_name, draw_support},
    Kind{"NodalRigidBoundaries", "NodalRigidBoundary", "Rigid support", "#33691e", false, true,
         false, 0.8, read_rigid, rigid_name, draw_rigid},
    Kind{"NodalElasticBoundaries", "NodalElasticBoundary", "Elastic support", "#558b2f", false,
         true, false, 0.8, read_elastic, rotation_name, draw_elastic},
    Kind{"NodalDisplacementBoundaries", "NodalDisplacementBoundary", "Moved elastic support",
         "#7a6f00", true, true, false, 0.8, read_moved, rotation_name, draw_moved},
    Kind{"NodalTemperatures", "NodalTemperature", "Temperature", "#b71c1c", false, true, true, 0.5,
         read_value, no_name, draw_temperature},
    Kind{"NodalAppliedTemperatures", "NodalAppliedTemperature", "Applied temperature", "#b71c1c",
         false, true, true, 0.5, read_value, no_name, draw_applied_temperature},
    Kind{"NodalHeatSources", "NodalHeatSource", "Heat source", "#e65100", false, true, false, 0.6,
         read_value, no_name, draw_heat},
    Kind{"NodalVoltages", "NodalVoltage", "Voltage", "#9a7400", false, true, false, 0.5, read_value,
         no_name, draw_voltage},
    Kind{"NodalAppliedVoltages", "NodalAppliedVoltage", "Applied voltage", "#9a7400", false, true,
         false, 0.9, read_value, no_name, draw_applied_voltage},
    Kind{"NodalCurrents", "NodalCurrent", "Current", "#1565c0", false, true, false, 0.7, read_value,
         no_name, draw_current},
    Kind{"NodalCharges", "NodalCharge", "Charge", "#283593", false, true, false, 0.6, read_value,
         no_name, draw_charge},
    Kind{"NodalPrescribedInOutlets", "NodalPrescribedInOutlet", "Inlet or outlet", "#0277bd", false,
         false, false, 0.7, read_type, no_name, draw_in_outlet},
    Kind{"NodalLumpedMasses", "NodalLumpedMass", "Mass", "#263238", false, true, false, 0.7,
         read_mass, no_name, draw_mass},
    Kind{"NodalPrescribedDisplacements", "NodalPrescribedDisplacement", "Prescribed displacement",
         "#ef6c00", true, true, false, 0.45, read_displacement, rotation_name, draw_displacement},
    Kind{"NodalPrescribedVelocities", "NodalPrescribedVelocity", "Prescribed velocity", "#ad1457",
         false, true, false, 0.6, read_velocity, axis_names, draw_velocity},
    Kind{"NodalMoments", "NodalMoment", "Moment", "#7b1fa2", true, true, false, 0.45, read_load,
         no_name, draw_moment},
    Kind{"NodalForces", "NodalForce", "Force", "#d50000", true, true, false, 0.45, read_load,
         no_name, draw_force},
    Kind{"NodalProbes", "NodalProbe", "Probe", "#4e342e", false, false, false, 0.6, read_type,
         no_name, draw_probe},
};

}  // namespace

std::array<Point, 3> axes_at(content::Key node, const Options& options) {
  const auto own = options.node_axes ? options.node_axes(node) : std::nullopt;
  if (!own) return {Point::UnitX(), Point::UnitY(), Point::UnitZ()};
  return {to_point((*own)[0]), to_point((*own)[1]), to_point((*own)[2])};
}

const Kind* find_kind(std::string_view table) {
  const auto* const found = std::ranges::find(kinds, table, &Kind::table);
  return found == kinds.end() ? nullptr : found;
}

}  // namespace picture
