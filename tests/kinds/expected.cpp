#include "tests/kinds/expected.h"

#include <map>
#include <sstream>

namespace {

/// A kind in one row. Lists are words; a column's word tells how its number is held.
struct Row {
  const char* record;
  const char* collection;
  int script;
  long record_event;
  long collection_event;
  const char* properties;
  const char* columns;
  const char* defaults;
};

constexpr char kMagnitudeProperties[] = "Magnitude LoadSets";
constexpr char kMagnitude[] = "Magnitude:double";
constexpr char kVectorLoadProperties[] =
    "Magnitude Vx Vy Vz MultiplierID LoadSets CoordinateSystemID";
constexpr char kVectorLoad[] =
    "MultiplierTableID:long Magnitude:double Vx:double Vy:double Vz:double CoordinateSystemID:long";

constexpr Row kRows[] = {
    {"NodalBoundaryCondition", "NodalBoundaryConditions", 101, 14, 14,
     "Tx Ty Tz Rx Ry Rz ConstraintSets", "Tx:flag Ty:flag Tz:flag Rx:flag Ry:flag Rz:flag",
     "0, 0, 0, 0, 0, 0"},
    {"NodalForce", "NodalForces", 103, 19, 19, kVectorLoadProperties, kVectorLoad,
     "1, 0, 0, 0, 0, 0"},
    {"NodalLumpedMass", "NodalLumpedMasses", 109, 22, 22, "Wx Wy Wz Mx My Mz UseMassUnits LoadSets",
     "Wx:double Wy:double Wz:double Mx:double My:double Mz:double UseMassUnits:flag",
     "0, 0, 0, 0, 0, 0, 0"},
    {"NodalTemperature", "NodalTemperatures", 111, 23, 23, kMagnitudeProperties, kMagnitude, "0"},
    {"NodalVoltage", "NodalVoltages", 113, 24, 24, kMagnitudeProperties, kMagnitude, "0"},
    {"NodalMoment", "NodalMoments", 123, 25, 25, kVectorLoadProperties, kVectorLoad,
     "1, 0, 0, 0, 0, 0"},
    {"NodalPrescribedVelocity", "NodalPrescribedVelocities", 131, 26, 26,
     "LoadSets MagnitudeX MagnitudeY MagnitudeZ UseX UseY UseZ",
     "MagnitudeX:double MagnitudeY:double MagnitudeZ:double UseX:raw UseY:raw UseZ:raw",
     "0, 0, 0, 0, 0, 0"},
    {"NodalPrescribedDisplacement", "NodalPrescribedDisplacements", 143, 30, 30,
     "IsRotate Direction Vx Vy Vz Magnitude ActiveRangeID MultiplierID LoadSets",
     "IsRotation:flag Direction:long MultiplierTableID:long ActiveRangeID:long Magnitude:double "
     "Vx:double Vy:double Vz:double",
     "0, 0, 1 ,0, 0, 0, 0, 0"},
    {"NodalAppliedTemperature", "NodalAppliedTemperatures", 147, 29, 29,
     "Magnitude Stiffness MultiplierID LoadSets Scale ActivationTime IsTimeVarying",
     "MultiplierTableID:long Magnitude:double Stiffness:double Scale:double ActivationTime:double "
     "IsTimeVarying:flag",
     "1, 0, 0, 0, 0, 0"},
    // The record and its collection have different codes.
    {"NodalAppliedVoltage", "NodalAppliedVoltages", 149, 29, 18, "Magnitude Stiffness LoadSets",
     "Magnitude:double Stiffness:double", "0, 0"},
    {"NodalRigidBoundary", "NodalRigidBoundaries", 151, 15, 15,
     "FixedX FixedY FixedZ Stiffness IsRotate ConstraintSets",
     "FixedX:wide FixedY:wide FixedZ:wide Stiffness:double IsRotation:wide",
     "0, 0, 0, 10000000000, 0"},
    {"NodalElasticBoundary", "NodalElasticBoundaries", 153, 16, 16,
     "Vx Vy Vz Stiffness IsRotate ConstraintSets",
     "Vx:double Vy:double Vz:double Stiffness:double IsRotation:wide", "0, 0, 0, 10000000000, 0"},
    {"NodalDisplacementBoundary", "NodalDisplacementBoundaries", 157, 17, 17,
     "Magnitude Vx Vy Vz Stiffness IsRotate ConstraintSets",
     "Magnitude:double Vx:double Vy:double Vz:double Stiffness:double IsRotation:wide",
     "0, 0, 0, 0, 10000000000, 0"},
    {"NodalHeatSource", "NodalHeatSources", 201, 56, 56,
     "Magnitude MultiplierID LoadSets ActivationTime",
     "MultiplierTableID:long Magnitude:double ActivationTime:double", "1, 0, 0"},
    {"NodalProbe", "NodalProbes", 165, 37, 37, "Type UseSeparateWindow DesignScenarios",
     "Type:long SeparateWindow:short", "0, 0"},
    {"NodalPrescribedInOutlet", "NodalPrescribedInOutlets", 167, 58, 58, "LoadSets Type",
     "Type:long", "0"},
    {"NodalCurrent", "NodalCurrents", 169, 21, 21, kMagnitudeProperties, kMagnitude, "0"},
    {"NodalCharge", "NodalCharges", 171, 20, 20, kMagnitudeProperties, kMagnitude, "0"},
};

std::vector<std::string> words(const char* text) {
  std::istringstream in(text);
  std::vector<std::string> result;
  for (std::string word; in >> word;) result.push_back(word);
  return result;
}

/// Few columns have another name than the property that is kept in them.
std::string property_of(const std::string& column) {
  if (column == "MultiplierTableID") return "MultiplierID";
  if (column == "IsRotation") return "IsRotate";
  if (column == "SeparateWindow") return "UseSeparateWindow";
  return column;
}

ExpectedColumn to_column(const std::string& word) {
  static const std::map<std::string, Held> held = {
      {"double", Held::kDouble}, {"long", Held::kLong},     {"short", Held::kShort},
      {"flag", Held::kFlag},     {"wide", Held::kWideFlag}, {"raw", Held::kRawFlag}};
  const std::size_t colon = word.find(':');
  const std::string name = word.substr(0, colon);
  return {name, property_of(name), held.at(word.substr(colon + 1))};
}

ExpectedKind to_kind(const Row& row) {
  std::vector<ExpectedColumn> columns;
  for (const std::string& word : words(row.columns)) columns.push_back(to_column(word));
  return {row.record,           row.collection,        row.script, row.record_event,
          row.collection_event, words(row.properties), columns,    row.defaults};
}

std::string number_of(const std::vector<ExpectedColumn>& columns, std::size_t index) {
  return std::to_string(index + 1) + (columns[index].held == Held::kDouble ? ".5" : "");
}

}  // namespace

std::string ExpectedKind::values() const {
  std::string text = "'Tip load', 12";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    // One separator of one kind has its blank on the other side.
    text += columns[i].name == "ActiveRangeID" ? " ," : ", ";
    text += number_of(columns, i);
  }
  return text;
}

std::string ExpectedKind::assignments() const {
  std::string text = "Description = 'Tip load', VertexID = 12";
  for (std::size_t i = 0; i < columns.size(); ++i) {
    text += ", " + columns[i].name + " = " + number_of(columns, i);
  }
  return text;
}

const std::vector<ExpectedKind>& expected_kinds() {
  static const std::vector<ExpectedKind> kinds = [] {
    std::vector<ExpectedKind> result;
    for (const Row& row : kRows) result.push_back(to_kind(row));
    return result;
  }();
  return kinds;
}
