#pragma once

#include <string>

#include "tools/geometry/view.h"
#include "tools/picture/layout.h"

namespace picture {

/// The column of the legend as elements of SVG: glyphs with names, counts and values, the
/// resultant, the notes and the axes.
std::string legend_svg(const Picture& picture, const geometry::View& view, const Area& area);

/// The three axes as they lie in the view, around a point.
std::string axes_svg(const geometry::View& view, const Spot& at);

}  // namespace picture
