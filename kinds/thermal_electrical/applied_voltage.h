#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// A voltage applied to a vertex through a stiffness. The host files events of one record with
/// those of applied temperatures, 29, but has a code for the collection.
class CNodalAppliedVoltage
    : public With<COrvelNodalLoadDbRecord<CNodalAppliedVoltage, INodalAppliedVoltage>, Magnitude,
                  Stiffness> {
 public:
  static constexpr KindNames kNames{L"NodalAppliedVoltage", L"NodalAppliedVoltages", 29, 18};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalAppliedVoltage>>({
        {L"Magnitude", &CNodalAppliedVoltage::magnitude_},
        {L"Stiffness", &CNodalAppliedVoltage::stiffness_},
    });
  }
};

}  // namespace orv
