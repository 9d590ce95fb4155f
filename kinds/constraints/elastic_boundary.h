#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_constraint.h"

namespace orv {

/// An elastic support of a vertex: a stiffness along a vector.
class CNodalElasticBoundary
    : public With<COrvelNodalConstraintDbRecord<CNodalElasticBoundary, INodalElasticBoundary>,
                  Vector, SupportStiffness, SupportRotation> {
 public:
  static constexpr KindNames kNames{L"NodalElasticBoundary", L"NodalElasticBoundaries", 16};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalElasticBoundary>>({
        {L"Vx", &CNodalElasticBoundary::vx_},
        {L"Vy", &CNodalElasticBoundary::vy_},
        {L"Vz", &CNodalElasticBoundary::vz_},
        {L"Stiffness", &CNodalElasticBoundary::stiffness_},
        {L"IsRotation", &CNodalElasticBoundary::is_rotation_},
    });
  }
};

}  // namespace orv
