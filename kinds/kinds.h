#pragma once

#include "kinds/constraints/boundary_condition.h"
#include "kinds/constraints/displacement_boundary.h"
#include "kinds/constraints/elastic_boundary.h"
#include "kinds/constraints/rigid_boundary.h"
#include "kinds/flow_and_probes/prescribed_in_outlet.h"
#include "kinds/flow_and_probes/probe.h"
#include "kinds/structural/force.h"
#include "kinds/structural/lumped_mass.h"
#include "kinds/structural/moment.h"
#include "kinds/structural/prescribed_displacement.h"
#include "kinds/structural/prescribed_velocity.h"
#include "kinds/thermal_electrical/applied_temperature.h"
#include "kinds/thermal_electrical/applied_voltage.h"
#include "kinds/thermal_electrical/charge.h"
#include "kinds/thermal_electrical/current.h"
#include "kinds/thermal_electrical/heat_source.h"
#include "kinds/thermal_electrical/temperature.h"
#include "kinds/thermal_electrical/voltage.h"

// The list of kinds, in the order in which their classes are registered. Each line names a kind,
// its collection, and the registry script of the record's class; the collection's is the next
// number. The build makes the scripts from these lines.
#define FOR_EACH_KIND(KIND)                                            \
  KIND(NodalBoundaryCondition, NodalBoundaryConditions, 101)           \
  KIND(NodalForce, NodalForces, 103)                                   \
  KIND(NodalCharge, NodalCharges, 171)                                 \
  KIND(NodalCurrent, NodalCurrents, 169)                               \
  KIND(NodalLumpedMass, NodalLumpedMasses, 109)                        \
  KIND(NodalTemperature, NodalTemperatures, 111)                       \
  KIND(NodalVoltage, NodalVoltages, 113)                               \
  KIND(NodalMoment, NodalMoments, 123)                                 \
  KIND(NodalPrescribedVelocity, NodalPrescribedVelocities, 131)        \
  KIND(NodalPrescribedDisplacement, NodalPrescribedDisplacements, 143) \
  KIND(NodalAppliedTemperature, NodalAppliedTemperatures, 147)         \
  KIND(NodalAppliedVoltage, NodalAppliedVoltages, 149)                 \
  KIND(NodalRigidBoundary, NodalRigidBoundaries, 151)                  \
  KIND(NodalElasticBoundary, NodalElasticBoundaries, 153)              \
  KIND(NodalDisplacementBoundary, NodalDisplacementBoundaries, 157)    \
  KIND(NodalProbe, NodalProbes, 165)                                   \
  KIND(NodalHeatSource, NodalHeatSources, 201)                         \
  KIND(NodalPrescribedInOutlet, NodalPrescribedInOutlets, 167)

namespace orv {

// A kind's file names its table for the database, the list its collection for the type library:
// both are the same name.
#define KIND(name, collection, script)                \
  static_assert(C##name::kNames.object == L"" #name); \
  static_assert(C##name::kNames.table == L"" #collection);
FOR_EACH_KIND(KIND)
#undef KIND

}  // namespace orv
