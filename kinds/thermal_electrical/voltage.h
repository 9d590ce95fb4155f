#pragma once

#include "kinds/thermal_electrical/magnitude_load.h"

namespace orv {

/// A voltage that a vertex has.
class CNodalVoltage : public MagnitudeLoad<CNodalVoltage, INodalVoltage> {
 public:
  static constexpr KindNames kNames{L"NodalVoltage", L"NodalVoltages", 24};
};

}  // namespace orv
