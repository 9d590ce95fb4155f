#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// A load of some magnitude along, or about, a vector: what forces and moments have in common.
template <class Self, class ClassInterface>
class VectorLoad : public With<COrvelNodalLoadDbRecord<Self, ClassInterface>, Magnitude, Vector,
                               Multiplier, CoordinateSystem> {
 public:
  static constexpr auto columns() {
    return std::to_array<Column<Self>>({
        {L"MultiplierTableID", &Self::multiplier_table_id_},
        {L"Magnitude", &Self::magnitude_},
        {L"Vx", &Self::vx_},
        {L"Vy", &Self::vy_},
        {L"Vz", &Self::vz_},
        {L"CoordinateSystemID", &Self::coordinate_system_id_},
    });
  }
};

}  // namespace orv
