#include "tools/picture/layout.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace picture {
namespace {

// As parts of the diagonal of what is drawn.
constexpr double glyph_size = 0.042;

constexpr double shortest_arrow = 1.0;  // in units of the glyph
constexpr double longest_arrow = 2.5;
constexpr double reach_of_others = 1.35;

// So many glyphs of a sort are drawn at full size, and none is left out.
constexpr std::size_t few = 60;
constexpr double smallest_of_crowd = 0.42;

class Box {
 public:
  void add(const Spot& spot) {
    low_ = low_.cwiseMin(spot);
    high_ = high_.cwiseMax(spot);
  }
  [[nodiscard]] bool is_empty() const { return !(low_.x() <= high_.x()); }
  [[nodiscard]] const Spot& low() const { return low_; }
  [[nodiscard]] Spot size() const { return is_empty() ? Spot::Zero() : Spot(high_ - low_); }

 private:
  Spot low_ = Spot::Constant(INFINITY);
  Spot high_ = Spot::Constant(-INFINITY);
};

// Of a crowd that fills an area, about so many glyphs have one.
constexpr double most = 500;

double size_in_crowd(const Sort& sort) {
  if (sort.symbols.size() <= few) return 1;
  const double part = static_cast<double>(few) / static_cast<double>(sort.symbols.size());
  return std::max(smallest_of_crowd, std::sqrt(std::sqrt(part)));
}

// All nodes that an element names, and no others: a deck may have nodes that it does not use.
template <class Add>
void for_each_used_point(const geometry::Shape& shape, const Add& add) {
  for (const geometry::Face& face : shape.faces) std::ranges::for_each(face.around(), add);
  for (const geometry::Line& line : shape.lines) std::ranges::for_each(line.along(), add);
  std::ranges::for_each(shape.singles, add);
}

void add_reach(const Symbol& symbol, const Sort& sort, const Spot& at, double unit,
               const geometry::View& view, Box& box) {
  const double reach = sort.kind->has_arrow ? 0.4 : reach_of_others;
  const Spot margin = Spot::Constant(reach * unit);
  box.add(at - margin);
  box.add(at + margin);
  if (!sort.kind->has_arrow) return;
  const Spot arrow = arrow_of(symbol, sort, view).head<2>() * unit;
  const Spot end = symbol.ends_at_node ? Spot(at - arrow) : Spot(at + arrow);
  box.add(end - margin);
  box.add(end + margin);
}

}  // namespace

Point arrow_of(const Symbol& symbol, const Sort& sort, const geometry::View& view) {
  const double length = symbol.mark.vector.norm();
  if (length == 0) return Point::Zero();
  const double part = length / sort.largest;
  const double drawn = shortest_arrow + (longest_arrow - shortest_arrow) * part;
  return view.project(symbol.mark.vector) * (drawn / length);
}

Layout lay_out(const geometry::Shape& shape, const Symbols& symbols, const Extras& extras,
               const geometry::View& view, const Area& area, double scale) {
  Layout layout;
  layout.area = area;
  Box body;
  const auto project = [&](const Point& point, std::vector<Point>& to) {
    to.push_back(view.project(point));
  };
  for (const Point& point : shape.points) project(point, layout.shape);
  for_each_used_point(shape,
                      [&](geometry::Place place) { body.add(layout.shape[place].head<2>()); });
  for (const Carrier& node : symbols.nodes) {
    project(node.at, layout.nodes);
    body.add(layout.nodes.back().head<2>());
  }
  for (const Point& point : extras.vertices) {
    project(point, layout.extras.vertices);
    body.add(layout.extras.vertices.back().head<2>());
  }
  for (const Point& point : extras.axis) {
    project(point, layout.extras.axis);
    body.add(layout.extras.axis.back().head<2>());
  }

  // Everything grows with the scale, glyphs included, so that one step finds it.
  const double diagonal = body.size().norm();
  const double unit = (diagonal > 0 ? diagonal : 1) * glyph_size * scale;
  Box box = body;
  for (const Sort& sort : symbols.sorts) {
    layout.unit_of_sort.push_back(unit * size_in_crowd(sort));
    for (const Symbol& symbol : sort.symbols) {
      add_reach(symbol, sort, layout.nodes[symbol.node].head<2>(), layout.unit_of_sort.back(), view,
                box);
    }
  }
  const Spot size = box.size();
  const Spot space(area.right - area.left, area.bottom - area.top);
  double pixels = INFINITY;
  if (size.x() > 0) pixels = space.x() / size.x();
  if (size.y() > 0) pixels = std::min(pixels, space.y() / size.y());
  if (!std::isfinite(pixels)) pixels = 1;

  const Spot low = box.is_empty() ? Spot::Zero() : box.low();
  const Spot shift = Spot(area.left, area.top) + (space - size * pixels) / 2;
  for (auto* points :
       {&layout.shape, &layout.nodes, &layout.extras.vertices, &layout.extras.axis}) {
    for (Point& point : *points) {
      point = Point((point.x() - low.x()) * pixels + shift.x(),
                    (point.y() - low.y()) * pixels + shift.y(), point.z() * pixels);
    }
  }
  layout.unit = unit * pixels;
  for (double& of_sort : layout.unit_of_sort) of_sort *= pixels;
  return layout;
}

namespace {

double distance_in_crowd(const Sort& sort, const Layout& layout, double unit) {
  Box box;
  for (const Symbol& symbol : sort.symbols) box.add(layout.nodes[symbol.node].head<2>());
  const double area = box.size().x() * box.size().y();
  return std::max({4.0, sort.kind->width * unit, std::sqrt(area / most)});
}

// Places of glyphs, none nearer to another than a distance.
class Spread {
 public:
  explicit Spread(double distance) : distance_(distance) {}

  // Whether there is room for the glyph, which it then takes.
  bool take(const Spot& at) {
    // Cells are as wide as the distance, so that only the nine about a glyph need be looked at.
    const auto column = static_cast<std::int64_t>(std::floor(at.x() / distance_));
    const auto row = static_cast<std::int64_t>(std::floor(at.y() / distance_));
    for (std::int64_t x = column - 1; x <= column + 1; ++x) {
      for (std::int64_t y = row - 1; y <= row + 1; ++y) {
        if (is_near(x, y, at)) return false;
      }
    }
    cells_[key(column, row)].push_back(at);
    return true;
  }

 private:
  static std::int64_t key(std::int64_t column, std::int64_t row) { return column << 32 ^ row; }

  bool is_near(std::int64_t column, std::int64_t row, const Spot& at) const {
    const auto cell = cells_.find(key(column, row));
    return cell != cells_.end() && std::ranges::any_of(cell->second, [&](const Spot& other) {
             return (other - at).squaredNorm() < distance_ * distance_;
           });
  }

  double distance_;
  std::unordered_map<std::int64_t, std::vector<Spot>> cells_;
};

}  // namespace

std::vector<bool> thinned(const Sort& sort, const Layout& layout, double unit,
                          const std::vector<bool>& is_in_sight) {
  if (sort.symbols.size() <= few) return std::vector<bool>(sort.symbols.size(), true);
  std::vector<bool> has_glyph(sort.symbols.size(), false);
  Spread spread(distance_in_crowd(sort, layout, unit));
  for (const bool in_sight : {true, false}) {
    for (std::size_t i = 0; i < sort.symbols.size(); ++i) {
      const NodeIndex node = sort.symbols[i].node;
      if (is_in_sight[node] == in_sight) {
        has_glyph[i] = spread.take(layout.nodes[node].head<2>());
      }
    }
  }
  return has_glyph;
}

}  // namespace picture
