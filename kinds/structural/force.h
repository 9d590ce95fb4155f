#pragma once

#include "kinds/structural/vector_load.h"

namespace orv {

/// A concentrated force on a vertex.
class CNodalForce : public VectorLoad<CNodalForce, INodalForce> {
 public:
  static constexpr KindNames kNames{L"NodalForce", L"NodalForces", 19};
};

}  // namespace orv
