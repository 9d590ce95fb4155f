#pragma once

#include <span>
#include <vector>

#include "tools/geometry/shape.h"

namespace geometry {

/// Tells what is hidden behind what, by one sample for each pixel of the screen. Points are those
/// of the screen: x and y in pixels from the upper left, z towards the eye in the same unit.
class DepthBuffer {
 public:
  DepthBuffer(int width, int height);

  /// Puts a polygon before what lies behind it.
  void add(std::span<const Point> polygon);

  enum class Seen { nothing, in_part, whole };

  /// How much is seen of a polygon among all that were added, itself included.
  [[nodiscard]] Seen seen(std::span<const Point> polygon) const;

  /// Whether a point is seen, with a tolerance of a pixel, so that points of a visible surface are.
  [[nodiscard]] bool sees(const Point& point) const;

 private:
  template <class Visit>
  void visit(std::span<const Point> polygon, const Visit& visit) const;
  template <class Visit>
  void visit_triangle(const Point& a, const Point& b, const Point& c, const Visit& visit) const;

  int width_;
  int height_;
  std::vector<float> depths_;
};

}  // namespace geometry
