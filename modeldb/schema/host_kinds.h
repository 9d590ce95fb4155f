#pragma once

#include "modeldb/schema/kind.h"

namespace modeldb {

// The kinds that belong to the model database itself.

const Kind& vertex_kind();
const Kind& load_set_kind();
const Kind& constraint_set_kind();
const Kind& design_scenario_kind();

}  // namespace modeldb
