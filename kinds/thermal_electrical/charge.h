#pragma once

#include "kinds/thermal_electrical/magnitude_load.h"

namespace orv {

/// An electric charge at a vertex.
class CNodalCharge : public MagnitudeLoad<CNodalCharge, INodalCharge> {
 public:
  static constexpr KindNames kNames{L"NodalCharge", L"NodalCharges", 20};
};

}  // namespace orv
