#include "tests/kinds/expected.h"

#include <algorithm>

namespace {

using enum Held;

const std::vector<ExpectedProperty> kMagnitudeOnly = {{L"Magnitude", kDouble}};
const std::string kMagnitudeColumns = "Description, VertexID, Magnitude";
const std::string kMagnitudeValues = "'Tip load', 12, 1.5";
const std::string kMagnitudeAssignments =
    "Description = 'Tip load', VertexID = 12, Magnitude = 1.5";
const std::string kMagnitudeDefaults = "'', 0, 0";

const std::vector<ExpectedProperty> kVectorLoad = {
    {L"MultiplierID", kLong}, {L"Magnitude", kDouble}, {L"Vx", kDouble},
    {L"Vy", kDouble},         {L"Vz", kDouble},        {L"CoordinateSystemID", kLong}};
const std::string kVectorLoadColumns =
    "Description, VertexID, MultiplierTableID, Magnitude, Vx, Vy, Vz, CoordinateSystemID";
const std::string kVectorLoadValues = "'Tip load', 12, 1, 2.5, 3.5, 4.5, 5.5, 6";
const std::string kVectorLoadAssignments =
    "Description = 'Tip load', VertexID = 12, MultiplierTableID = 1, Magnitude = 2.5, Vx = 3.5, "
    "Vy = 4.5, Vz = 5.5, CoordinateSystemID = 6";
const std::string kVectorLoadDefaults = "'', 0, 1, 0, 0, 0, 0, 0";

const std::vector<ExpectedKind> kKinds = {
    {"NodalBoundaryCondition",
     "NodalBoundaryConditions",
     14,
     14,
     {{L"Tx", kFlag},
      {L"Ty", kFlag},
      {L"Tz", kFlag},
      {L"Rx", kFlag},
      {L"Ry", kFlag},
      {L"Rz", kFlag}},
     "Description, VertexID, Tx, Ty, Tz, Rx, Ry, Rz",
     "'Tip load', 12, 1, 2, 3, 4, 5, 6",
     "Description = 'Tip load', VertexID = 12, Tx = 1, Ty = 2, Tz = 3, Rx = 4, Ry = 5, Rz = 6",
     "'', 0, 0, 0, 0, 0, 0, 0"},
    {"NodalRigidBoundary",
     "NodalRigidBoundaries",
     15,
     15,
     {{L"FixedX", kWideFlag},
      {L"FixedY", kWideFlag},
      {L"FixedZ", kWideFlag},
      {L"Stiffness", kDouble},
      {L"IsRotate", kWideFlag}},
     "Description, VertexID, FixedX, FixedY, FixedZ, Stiffness, IsRotation",
     "'Tip load', 12, 1, 2, 3, 4.5, 5",
     "Description = 'Tip load', VertexID = 12, FixedX = 1, FixedY = 2, FixedZ = 3, "
     "Stiffness = 4.5, IsRotation = 5",
     "'', 0, 0, 0, 0, 10000000000, 0"},
    {"NodalElasticBoundary",
     "NodalElasticBoundaries",
     16,
     16,
     {{L"Vx", kDouble},
      {L"Vy", kDouble},
      {L"Vz", kDouble},
      {L"Stiffness", kDouble},
      {L"IsRotate", kWideFlag}},
     "Description, VertexID, Vx, Vy, Vz, Stiffness, IsRotation",
     "'Tip load', 12, 1.5, 2.5, 3.5, 4.5, 5",
     "Description = 'Tip load', VertexID = 12, Vx = 1.5, Vy = 2.5, Vz = 3.5, Stiffness = 4.5, "
     "IsRotation = 5",
     "'', 0, 0, 0, 0, 10000000000, 0"},
    {"NodalDisplacementBoundary",
     "NodalDisplacementBoundaries",
     17,
     17,
     {{L"Magnitude", kDouble},
      {L"Vx", kDouble},
      {L"Vy", kDouble},
      {L"Vz", kDouble},
      {L"Stiffness", kDouble},
      {L"IsRotate", kWideFlag}},
     "Description, VertexID, Magnitude, Vx, Vy, Vz, Stiffness, IsRotation",
     "'Tip load', 12, 1.5, 2.5, 3.5, 4.5, 5.5, 6",
     "Description = 'Tip load', VertexID = 12, Magnitude = 1.5, Vx = 2.5, Vy = 3.5, Vz = 4.5, "
     "Stiffness = 5.5, IsRotation = 6",
     "'', 0, 0, 0, 0, 0, 10000000000, 0"},
    {"NodalForce", "NodalForces", 19, 19, kVectorLoad, kVectorLoadColumns, kVectorLoadValues,
     kVectorLoadAssignments, kVectorLoadDefaults},
    {"NodalMoment", "NodalMoments", 25, 25, kVectorLoad, kVectorLoadColumns, kVectorLoadValues,
     kVectorLoadAssignments, kVectorLoadDefaults},
    {"NodalLumpedMass",
     "NodalLumpedMasses",
     22,
     22,
     {{L"Wx", kDouble},
      {L"Wy", kDouble},
      {L"Wz", kDouble},
      {L"Mx", kDouble},
      {L"My", kDouble},
      {L"Mz", kDouble},
      {L"UseMassUnits", kFlag}},
     "Description, VertexID, Wx, Wy, Wz, Mx, My, Mz, UseMassUnits",
     "'Tip load', 12, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7",
     "Description = 'Tip load', VertexID = 12, Wx = 1.5, Wy = 2.5, Wz = 3.5, Mx = 4.5, My = 5.5, "
     "Mz = 6.5, UseMassUnits = 7",
     "'', 0, 0, 0, 0, 0, 0, 0, 0"},
    {"NodalPrescribedDisplacement",
     "NodalPrescribedDisplacements",
     30,
     30,
     {{L"IsRotate", kFlag},
      {L"Direction", kLong},
      {L"MultiplierID", kLong},
      {L"ActiveRangeID", kLong},
      {L"Magnitude", kDouble},
      {L"Vx", kDouble},
      {L"Vy", kDouble},
      {L"Vz", kDouble}},
     "Description, VertexID, IsRotation, Direction, MultiplierTableID, ActiveRangeID, Magnitude, "
     "Vx, Vy, Vz",
     "'Tip load', 12, 1, 2, 3 ,4, 5.5, 6.5, 7.5, 8.5",
     "Description = 'Tip load', VertexID = 12, IsRotation = 1, Direction = 2, "
     "MultiplierTableID = 3, ActiveRangeID = 4, Magnitude = 5.5, Vx = 6.5, Vy = 7.5, Vz = 8.5",
     "'', 0, 0, 0, 1 ,0, 0, 0, 0, 0"},
    {"NodalPrescribedVelocity",
     "NodalPrescribedVelocities",
     26,
     26,
     {{L"MagnitudeX", kDouble},
      {L"MagnitudeY", kDouble},
      {L"MagnitudeZ", kDouble},
      {L"UseX", kRawFlag},
      {L"UseY", kRawFlag},
      {L"UseZ", kRawFlag}},
     "Description, VertexID, MagnitudeX, MagnitudeY, MagnitudeZ, UseX, UseY, UseZ",
     "'Tip load', 12, 1.5, 2.5, 3.5, 4, 5, 6",
     "Description = 'Tip load', VertexID = 12, MagnitudeX = 1.5, MagnitudeY = 2.5, "
     "MagnitudeZ = 3.5, UseX = 4, UseY = 5, UseZ = 6",
     "'', 0, 0, 0, 0, 0, 0, 0"},
    {"NodalTemperature", "NodalTemperatures", 23, 23, kMagnitudeOnly, kMagnitudeColumns,
     kMagnitudeValues, kMagnitudeAssignments, kMagnitudeDefaults},
    {"NodalVoltage", "NodalVoltages", 24, 24, kMagnitudeOnly, kMagnitudeColumns, kMagnitudeValues,
     kMagnitudeAssignments, kMagnitudeDefaults},
    {"NodalCurrent", "NodalCurrents", 21, 21, kMagnitudeOnly, kMagnitudeColumns, kMagnitudeValues,
     kMagnitudeAssignments, kMagnitudeDefaults},
    {"NodalCharge", "NodalCharges", 20, 20, kMagnitudeOnly, kMagnitudeColumns, kMagnitudeValues,
     kMagnitudeAssignments, kMagnitudeDefaults},
    {"NodalAppliedTemperature",
     "NodalAppliedTemperatures",
     29,
     29,
     {{L"MultiplierID", kLong},
      {L"Magnitude", kDouble},
      {L"Stiffness", kDouble},
      {L"Scale", kDouble},
      {L"ActivationTime", kDouble},
      {L"IsTimeVarying", kFlag}},
     "Description, VertexID, MultiplierTableID, Magnitude, Stiffness, Scale, ActivationTime, "
     "IsTimeVarying",
     "'Tip load', 12, 1, 2.5, 3.5, 4.5, 5.5, 6",
     "Description = 'Tip load', VertexID = 12, MultiplierTableID = 1, Magnitude = 2.5, "
     "Stiffness = 3.5, Scale = 4.5, ActivationTime = 5.5, IsTimeVarying = 6",
     "'', 0, 1, 0, 0, 0, 0, 0"},
    {"NodalHeatSource",
     "NodalHeatSources",
     56,
     56,
     {{L"MultiplierID", kLong}, {L"Magnitude", kDouble}, {L"ActivationTime", kDouble}},
     "Description, VertexID, MultiplierTableID, Magnitude, ActivationTime",
     "'Tip load', 12, 1, 2.5, 3.5",
     "Description = 'Tip load', VertexID = 12, MultiplierTableID = 1, Magnitude = 2.5, "
     "ActivationTime = 3.5",
     "'', 0, 1, 0, 0"},
    {"NodalAppliedVoltage",
     "NodalAppliedVoltages",
     29,
     18,
     {{L"Magnitude", kDouble}, {L"Stiffness", kDouble}},
     "Description, VertexID, Magnitude, Stiffness",
     "'Tip load', 12, 1.5, 2.5",
     "Description = 'Tip load', VertexID = 12, Magnitude = 1.5, Stiffness = 2.5",
     "'', 0, 0, 0"},
    {"NodalPrescribedInOutlet",
     "NodalPrescribedInOutlets",
     58,
     58,
     {{L"Type", kLong}},
     "Description, VertexID, Type",
     "'Tip load', 12, 1",
     "Description = 'Tip load', VertexID = 12, Type = 1",
     "'', 0, 0"},
    {"NodalProbe",
     "NodalProbes",
     37,
     37,
     {{L"Type", kLong}, {L"UseSeparateWindow", kShort}},
     "Description, VertexID, Type, SeparateWindow",
     "'Tip load', 12, 1, 2",
     "Description = 'Tip load', VertexID = 12, Type = 1, SeparateWindow = 2",
     "'', 0, 0, 0"},
};

}  // namespace

ExpectedKind expected_kind(const std::string& name) {
  const auto found = std::ranges::find(kKinds, name, &ExpectedKind::name);
  return found == kKinds.end() ? ExpectedKind{} : *found;
}
