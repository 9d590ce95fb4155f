#pragma once

#include <orv_host.h>

#include "com/ptr.h"
#include "modeldb/model/model.h"

namespace modeldb {

/// A new object of the original's kind with its values: properties, the same sets, and a vertex
/// object of its own that stands for the same vertex. Raises, with a sentence, when the original is
/// of no kind that the model has a table for.
com::Ptr<IDispatch> copy_of(const Model& model, IModelDatabase* database, IDispatch* original);

}  // namespace modeldb
