#pragma once

#include <vector>

#include "tools/model/kinds.h"
#include "tools/orv/model_file.h"

namespace orv {

/// What a new record has in the kind's columns, in their order. Not inside a transaction.
std::vector<double> values_of_new_record(const ModelFile& file, const model::Kind& kind);

}  // namespace orv
