#pragma once

#include <Eigen/Core>
#include <vector>

namespace geometry {

using ScreenLine = std::vector<Eigen::Vector2d>;

/// The line without the points from which it is nowhere farther than the tolerance. Its ends stay.
ScreenLine simplified(const ScreenLine& line, double tolerance);

}  // namespace geometry
