#pragma once

#include <string>

#include "tools/geometry/depth_buffer.h"
#include "tools/picture/layout.h"

namespace picture {

/// The glyphs of all records.
struct GlyphLayer {
  std::string definitions;  ///< glyphs that occur more than once
  std::string body;
  std::vector<LegendEntry> legend;
  std::size_t dots = 0;      ///< records without glyph, in a crowd
  std::size_t hidden = 0;    ///< glyphs behind the body
  std::size_t no_label = 0;  ///< labels for which there is no room
};

GlyphLayer draw_glyphs(const Symbols& symbols, const geometry::View& view, const Layout& layout,
                       const geometry::DepthBuffer& buffer, const Options& options);

}  // namespace picture
