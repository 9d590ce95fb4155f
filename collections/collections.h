#pragma once

#include "collections/db_collection.h"
#include "kinds/kinds.h"

namespace orv {

// The collection class of every kind: CNodalForces holds INodalForce, and so on.
#define KIND(name, collection, script) \
  using C##collection =                \
      COrvelDbCollection<I##name, I##collection, C##name::kNames.collection_event>;
FOR_EACH_KIND(KIND)
#undef KIND

}  // namespace orv
