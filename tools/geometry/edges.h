#pragma once

#include <array>
#include <span>
#include <vector>

#include "tools/geometry/shape.h"

namespace geometry {

/// A straight piece of an edge. An edge with a node at its middle is two of them.
using Segment = std::array<Place, 2>;

/// Points in a row; those of a closed line end with the one that they begin with.
using Polyline = std::vector<Place>;

/// The edges by which the form of a body is known: where its surface ends or has a bend of more
/// than 30 degrees, and where it turns away from the eye.
std::vector<Segment> feature_edges(const Shape& shape, const Point& from);

/// The edges of some faces, each once. The faces are given by their places in the shape.
std::vector<Segment> edges_of(const Shape& shape, std::span<const std::uint32_t> faces);

/// The outlines of the areas that some faces cover together. All faces turn the same way on the
/// screen, and so do their outlines, holes the other way.
std::vector<Polyline> outlines(const Shape& shape, std::span<const std::uint32_t> faces,
                               std::span<const Point> screen);

/// Joins segments to lines, straight on where there is a choice.
std::vector<Polyline> joined(std::span<const Segment> segments, std::span<const Point> screen);

/// Twice the area of a face on the screen: positive if it goes round clockwise there.
double area_on_screen(const Face& face, std::span<const Point> screen);

}  // namespace geometry
