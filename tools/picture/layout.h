#pragma once

#include <vector>

#include "tools/picture/symbols.h"

namespace picture {

/// A rectangle of the picture, in pixels from its upper left.
struct Area {
  double left = 0, top = 0, right = 0, bottom = 0;
};

/// What is drawn besides the mesh and the records.
struct Extras {
  std::vector<Point> vertices;  ///< of a model without mesh
  std::vector<Point> axis;      ///< the two ends of the axis of a body of revolution, or none
};

/// Where everything stands in the picture.
struct Layout {
  Area area;                 ///< what is left of the frame for the model
  double unit = 1;           ///< pixels of a glyph's unit, before it is made smaller
  std::vector<Point> shape;  ///< the shape's points on the screen, in pixels
  std::vector<Point> nodes;  ///< those that carry records
  Extras extras;
  std::vector<double> unit_of_sort;  ///< pixels; smaller where there are many
};

/// Chooses the scale at which the model and all glyphs lie within the area.
Layout lay_out(const geometry::Shape& shape, const Symbols& symbols, const Extras& extras,
               const geometry::View& view, const Area& area, double scale);

/// How a symbol's vector is drawn: on the screen, in units of the glyph.
Point arrow_of(const Symbol& symbol, const Sort& sort, const geometry::View& view);

/// Which symbols of a sort have a glyph: all, or so many of a crowd as can stand side by side,
/// those in sight before the others. `is_in_sight` has a value for each node.
std::vector<bool> thinned(const Sort& sort, const Layout& layout, double unit,
                          const std::vector<bool>& is_in_sight);

}  // namespace picture
