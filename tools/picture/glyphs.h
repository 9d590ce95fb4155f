#pragma once

#include "tools/geometry/view.h"
#include "tools/picture/drawing.h"

/// The glyphs. Directions are projected: x to the right, y downwards, z towards the eye.
namespace picture::glyphs {

using geometry::Point;

struct Arrow {
  int heads = 1;
  bool is_open = false;      ///< white with a line around it
  bool has_bar = false;      ///< across its tail
  bool ends_at_node = true;  ///< with its tip; false: begins there
  double shortest = 0.42;    ///< what is shorter on the screen is drawn as seen from its end
};

/// An arrow along a vector. Seen from its end it is a circle with a dot (towards the eye) or a
/// cross.
Drawing arrow(const Point& vector, const Arrow& arrow);

/// What has no direction or no size: a small ring.
Drawing nothing();

/// A cone with its tip at the node, which lies in the direction of a unit vector.
void add_cone(const Point& direction, Drawing& drawing);

/// A ring about an axis, at some distance from the node on the side of the unit vector.
void add_ring(const Point& direction, double distance, Drawing& drawing);

/// A block at the ground, behind a cone.
void add_block(const Point& direction, Drawing& drawing);

/// A spring from the node to the ground.
void add_spring(const Point& direction, Drawing& drawing);

Drawing mass();
Drawing thermometer(bool has_foot);
Drawing flame(bool is_sink);
Drawing bolt(bool has_circle);
Drawing current(bool leaves);
Drawing charge(bool is_negative);
Drawing probe();
Drawing in_outlet();
/// One arrow with two chevrons for each axis.
void add_velocity(const Point& vector, Drawing& drawing);

}  // namespace picture::glyphs
