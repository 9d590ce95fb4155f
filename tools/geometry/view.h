#pragma once

#include <optional>
#include <string_view>

#include "tools/geometry/shape.h"

namespace geometry {

/// A parallel projection.
class View {
 public:
  /// Looks at the model from the side to which the vector points. Of its length nothing depends,
  /// but it must not be 0. Up is z, or y for a look along z.
  explicit View(const Point& from);

  /// x to the right, y downwards, and z towards the eye.
  [[nodiscard]] Point project(const Point& point) const {
    return {right_.dot(point), -up_.dot(point), from_.dot(point)};
  }

  /// The direction to the eye, of length 1.
  [[nodiscard]] const Point& from() const { return from_; }

 private:
  Point from_, right_, up_;
};

/// The isometric view's direction.
Point isometric();

/// Reads where to look from: "iso", an axis with its sign ("+x", "-z"), or three numbers with
/// commas between them ("1,-2,0.5"). Nothing, if the text is none of these.
std::optional<Point> read_direction(std::string_view text);

/// The direction from which a shape is best seen: along z what lies in the plane of x and y,
/// otherwise isometric.
Point best_direction(const Shape& shape);

}  // namespace geometry
