#pragma once

#include "kinds/thermal_electrical/magnitude_load.h"

namespace orv {

/// A temperature that a vertex has.
class CNodalTemperature : public MagnitudeLoad<CNodalTemperature, INodalTemperature> {
 public:
  static constexpr KindNames kNames{L"NodalTemperature", L"NodalTemperatures", 23};
};

}  // namespace orv
