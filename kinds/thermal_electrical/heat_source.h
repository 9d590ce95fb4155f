#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// Heat that enters the model at a vertex.
class CNodalHeatSource : public With<COrvelNodalLoadDbRecord<CNodalHeatSource, INodalHeatSource>,
                                     Magnitude, Multiplier, ActivationTime> {
 public:
  static constexpr KindNames kNames{L"NodalHeatSource", L"NodalHeatSources", 56};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalHeatSource>>({
        {L"MultiplierTableID", &CNodalHeatSource::multiplier_table_id_},
        {L"Magnitude", &CNodalHeatSource::magnitude_},
        {L"ActivationTime", &CNodalHeatSource::activation_time_},
    });
  }
};

}  // namespace orv
