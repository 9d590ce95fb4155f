#pragma once

#include "kinds/thermal_electrical/magnitude_load.h"

namespace orv {

/// An electric current into a vertex.
class CNodalCurrent : public MagnitudeLoad<CNodalCurrent, INodalCurrent> {
 public:
  static constexpr KindNames kNames{L"NodalCurrent", L"NodalCurrents", 21};
};

}  // namespace orv
