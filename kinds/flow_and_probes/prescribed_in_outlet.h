#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// Marks a vertex as an inlet or outlet of the flow.
class CNodalPrescribedInOutlet
    : public With<COrvelNodalLoadDbRecord<CNodalPrescribedInOutlet, INodalPrescribedInOutlet>,
                  Type> {
 public:
  static constexpr KindNames kNames{L"NodalPrescribedInOutlet", L"NodalPrescribedInOutlets", 58};

  static constexpr auto columns() {
    return std::to_array<Column<CNodalPrescribedInOutlet>>({
        {L"Type", &CNodalPrescribedInOutlet::type_},
    });
  }
};

}  // namespace orv
