#pragma once

#include "kinds/structural/vector_load.h"

namespace orv {

/// A concentrated moment on a vertex.
class CNodalMoment : public VectorLoad<CNodalMoment, INodalMoment> {
 public:
  static constexpr KindNames kNames{L"NodalMoment", L"NodalMoments", 25};
};

}  // namespace orv
