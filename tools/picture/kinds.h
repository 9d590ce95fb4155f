#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "tools/content/loads.h"
#include "tools/geometry/view.h"
#include "tools/picture/drawing.h"
#include "tools/picture/picture.h"

namespace picture {

using geometry::Point;

/// What a record asks to be drawn.
struct Mark {
  int variant = 0;               ///< records of a kind that differ in this have a legend each
  Point vector = Point::Zero();  ///< global; of an arrow, in the load's unit
  double value = 0;              ///< for the label and the legend's range
};

/// The axes of the degrees of freedom of a record's node.
std::array<Point, 3> axes_at(content::Key node, const Options& options);

/// How the glyph of a record is turned.
struct Setting {
  const geometry::View& view;
  Point outward;              ///< away from the body at the node, global; 0 where nobody can tell
  std::array<Point, 3> axes;  ///< along which a support holds, global
  Point arrow;                ///< the mark's vector on the screen, in units of the glyph
  bool ends_at_node = false;  ///< the arrow, with its tip
};

/// How the records of a kind are drawn.
struct Kind {
  std::string_view table;   ///< "NodalForces"
  std::string_view record;  ///< "NodalForce"
  std::string_view name;    ///< for the legend: "Force"
  std::string_view color;
  bool has_arrow = false;  ///< whose length shows the size of the vector
  bool has_value = false;  ///< the legend tells the range
  bool is_colored_by_value = false;
  double width = 1;  ///< what it takes of the screen, in its own unit
  /// Nothing, if the record's coordinate system is not known.
  std::optional<Mark> (*read)(const content::Table&, std::size_t record, const Options&);
  std::string (*variant_name)(int variant);  ///< behind the name
  Drawing (*draw)(const Mark&, const Setting&);
};

/// The kind of a table, or null: a table of no kind is not drawn.
const Kind* find_kind(std::string_view table);

}  // namespace picture
