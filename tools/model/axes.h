#pragma once

#include <vector>

#include "tools/content/loads.h"
#include "tools/model/origin.h"

namespace model {

/// The axes of a model's coordinate systems at its vertices, which must live as long as the result.
content::LocalAxes axes_of(std::vector<CoordinateSystem> systems,
                           const content::Vertices& vertices);

}  // namespace model
