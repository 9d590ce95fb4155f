#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_constraint.h"

namespace orv {

/// A support that displaces its vertex by a magnitude along a vector, through a stiffness.
class CNodalDisplacementBoundary
    : public With<
          COrvelNodalConstraintDbRecord<CNodalDisplacementBoundary, INodalDisplacementBoundary>,
          Magnitude, Vector, SupportStiffness, SupportRotation> {
 public:
  static constexpr KindNames kNames{L"NodalDisplacementBoundary", L"NodalDisplacementBoundaries",
                                    17};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalDisplacementBoundary>>({
        {L"Magnitude", &CNodalDisplacementBoundary::magnitude_},
        {L"Vx", &CNodalDisplacementBoundary::vx_},
        {L"Vy", &CNodalDisplacementBoundary::vy_},
        {L"Vz", &CNodalDisplacementBoundary::vz_},
        {L"Stiffness", &CNodalDisplacementBoundary::stiffness_},
        {L"IsRotation", &CNodalDisplacementBoundary::is_rotation_},
    });
  }
};

}  // namespace orv
