#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// A translation or rotation that a vertex is made to follow.
class CNodalPrescribedDisplacement
    : public With<
          COrvelNodalLoadDbRecord<CNodalPrescribedDisplacement, INodalPrescribedDisplacement>,
          Vector, Magnitude, Multiplier, MotionRotation> {
 public:
  static constexpr KindNames kNames{L"NodalPrescribedDisplacement", L"NodalPrescribedDisplacements",
                                    30};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalPrescribedDisplacement>>({
        {L"IsRotation", &CNodalPrescribedDisplacement::is_rotation_},
        {L"Direction", &CNodalPrescribedDisplacement::direction_},
        {L"MultiplierTableID", &CNodalPrescribedDisplacement::multiplier_table_id_},
        {L"ActiveRangeID", &CNodalPrescribedDisplacement::active_range_id_, L" ,"},
        {L"Magnitude", &CNodalPrescribedDisplacement::magnitude_},
        {L"Vx", &CNodalPrescribedDisplacement::vx_},
        {L"Vy", &CNodalPrescribedDisplacement::vy_},
        {L"Vz", &CNodalPrescribedDisplacement::vz_},
    });
  }

  /// An axis, or the vector; other numbers are kept as they are.
  STDMETHODIMP get_Direction(ScalarVector* pVal) override { return get(direction_, pVal); }
  STDMETHODIMP put_Direction(ScalarVector newVal) override { return put(direction_, newVal); }
  STDMETHODIMP get_ActiveRangeID(long* pVal) override { return get(active_range_id_, pVal); }
  STDMETHODIMP put_ActiveRangeID(long newVal) override { return put(active_range_id_, newVal); }

 private:
  Integer direction_{SVE_SCALAR_X};
  Integer active_range_id_;
};

}  // namespace orv
