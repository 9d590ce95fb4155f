#pragma once

#include <Eigen/Core>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace picture {

using Spot = Eigen::Vector2d;  ///< x to the right, y downwards

/// A glyph: some filled or stroked paths around the node at (0, 0), in units of the glyph's size.
/// Its colour is that of the group in which it stands.
class Drawing {
 public:
  enum class Style : std::uint8_t {
    filled,
    tinted,  ///< filled lightly
    open,    ///< white, with a line around it
    line,
  };

  /// Begins a path; what follows belongs to it.
  Drawing& begin(Style style);
  Drawing& move(const Spot& to);
  Drawing& line(const Spot& to);
  Drawing& close();
  Drawing& polygon(std::initializer_list<Spot> corners);
  /// An ellipse through centre + u and centre + v, half and a quarter of the way round from each
  /// other: the picture of a circle in space.
  Drawing& ellipse(const Spot& centre, const Spot& u, const Spot& v);
  Drawing& circle(const Spot& centre, double radius);

  /// Turned about the node into the direction of a vector of length 1, from that to the right.
  [[nodiscard]] Drawing turned(const Spot& direction) const;

  struct Bounds {
    Spot low, high;
  };
  [[nodiscard]] Bounds bounds() const;

  /// As elements of SVG, with so many pixels for the unit.
  [[nodiscard]] std::string svg(double size) const;

 private:
  struct Command {
    char letter;
    std::array<Spot, 3> spots;  ///< none for Z, one for M and L, three for C
    [[nodiscard]] std::size_t size() const { return letter == 'Z' ? 0 : letter == 'C' ? 3 : 1; }
  };
  struct Path {
    Style style;
    std::vector<Command> commands;
  };
  std::vector<Path> paths_;
};

}  // namespace picture
