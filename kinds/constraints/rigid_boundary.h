#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_constraint.h"

namespace orv {

/// A support that holds a vertex along the fixed axes through a stiffness.
class CNodalRigidBoundary
    : public With<COrvelNodalConstraintDbRecord<CNodalRigidBoundary, INodalRigidBoundary>,
                  SupportStiffness, SupportRotation> {
 public:
  static constexpr KindNames kNames{L"NodalRigidBoundary", L"NodalRigidBoundaries", 15};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalRigidBoundary>>({
        {L"FixedX", &CNodalRigidBoundary::fixed_x_},
        {L"FixedY", &CNodalRigidBoundary::fixed_y_},
        {L"FixedZ", &CNodalRigidBoundary::fixed_z_},
        {L"Stiffness", &CNodalRigidBoundary::stiffness_},
        {L"IsRotation", &CNodalRigidBoundary::is_rotation_},
    });
  }

  STDMETHODIMP get_FixedX(VARIANT_BOOL* pVal) override { return get_normalised(fixed_x_, pVal); }
  STDMETHODIMP put_FixedX(VARIANT_BOOL newVal) override { return put(fixed_x_, newVal); }
  STDMETHODIMP get_FixedY(VARIANT_BOOL* pVal) override { return get_normalised(fixed_y_, pVal); }
  STDMETHODIMP put_FixedY(VARIANT_BOOL newVal) override { return put(fixed_y_, newVal); }
  STDMETHODIMP get_FixedZ(VARIANT_BOOL* pVal) override { return get_normalised(fixed_z_, pVal); }
  STDMETHODIMP put_FixedZ(VARIANT_BOOL newVal) override { return put(fixed_z_, newVal); }

 private:
  WideFlag fixed_x_;
  WideFlag fixed_y_;
  WideFlag fixed_z_;
};

}  // namespace orv
