#pragma once

#include <orv_kinds.h>

#include <array>

#include "kinds/properties.h"
#include "records/nodal_load.h"

namespace orv {

/// A load that is one number: what temperatures, voltages, currents and charges have in common.
template <class Self, class ClassInterface>
class MagnitudeLoad : public With<COrvelNodalLoadDbRecord<Self, ClassInterface>, Magnitude> {
 public:
  static constexpr auto columns() {
    return std::to_array<Column<Self>>({{L"Magnitude", &Self::magnitude_}});
  }
};

}  // namespace orv
