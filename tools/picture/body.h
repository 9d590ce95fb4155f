#pragma once

#include <string>

#include "tools/geometry/depth_buffer.h"
#include "tools/picture/layout.h"

namespace picture {

/// The mesh as elements of SVG: shaded faces, feature edges, lines and points. Fills the buffer
/// with what hides.
std::string body_svg(const geometry::Shape& shape, const geometry::View& view, const Layout& layout,
                     geometry::DepthBuffer& buffer);

/// Points of one colour as one path, one for each three pixels.
std::string dots_svg(const std::vector<Spot>& spots, const std::string& attributes);

}  // namespace picture
