#pragma once

#include "com/boundary.h"
#include "modeldb/ado/record_load.h"
#include "modeldb/engine/turns.h"

namespace modeldb {

/// A member's body, run as com::boundary does and as one call of the model whose line is `turns`.
/// Null, for what belongs to no model yet, stands for no line.
template <class Body>
HRESULT model_call(const std::shared_ptr<Turns>& turns, Body&& body) noexcept {
  return com::boundary([&] {
    const RecordLoad::OtherCall call;
    if (!turns) return body();
    const Turn turn(turns);
    return body();
  });
}

}  // namespace modeldb
