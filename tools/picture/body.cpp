#include "tools/picture/body.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <unordered_set>

#include "tools/geometry/edges.h"
#include "tools/geometry/simplify.h"
#include "tools/picture/svg.h"

namespace picture {
namespace {

using geometry::DepthBuffer;
using geometry::Face;
using geometry::Family;
using geometry::Shape;

constexpr double tolerance = 0.12;        // of outlines and edges, in pixels
constexpr double smallest_mesh_cell = 7;  // pixels: below it lines would make the picture grey
constexpr int shades = 16;
constexpr double step_along_edge = 1.5;  // pixels between two looks at whether an edge is hidden

std::string spot(const Spot& at) { return svg::number(at.x()) + ' ' + svg::number(at.y()); }

void add_line(const geometry::ScreenLine& line, bool is_closed, std::string& path) {
  path += 'M' + spot(line.front());
  const std::size_t end = is_closed ? line.size() - 1 : line.size();
  for (std::size_t i = 1; i < end; ++i) path += (i == 1 ? 'L' : ' ') + spot(line[i]);
  if (is_closed) path += 'Z';
}

std::string path_element(const std::string& path, const std::string& attributes) {
  return path.empty() ? "" : "<path d=\"" + path + "\" " + attributes + "/>\n";
}

class Body {
 public:
  Body(const Shape& shape, const geometry::View& view, const Layout& layout, DepthBuffer& buffer)
      : shape_(shape), view_(view), screen_(layout.shape), buffer_(buffer) {}

  std::string svg() {
    find_front();
    for (const std::uint32_t face : front_) buffer_.add(polygon(face));
    find_visible();
    const bool has_mesh_lines = mean_size() >= smallest_mesh_cell;
    std::string text = hidden_in_part(has_mesh_lines);
    text += areas();
    if (has_mesh_lines) text += mesh_lines();
    text += features();
    text += lines();
    return text + singles();
  }

 private:
  std::span<const Point> polygon(std::uint32_t number) {
    polygon_.clear();
    for (const auto node : shape_.faces[number].around()) polygon_.push_back(screen_[node]);
    return polygon_;
  }

  // Solids are seen from outside only. On the screen, where y goes down, what goes round
  // counterclockwise in space goes round clockwise the other way.
  void find_front() {
    for (std::uint32_t i = 0; i < shape_.faces.size(); ++i) {
      const Face& face = shape_.faces[i];
      const double area = geometry::area_on_screen(face, screen_);
      if (face.family == Family::solid ? area < 0 : area != 0) front_.push_back(i);
    }
  }

  void find_visible() {
    for (const std::uint32_t face : front_) {
      switch (buffer_.seen(polygon(face))) {
        case DepthBuffer::Seen::nothing:
          break;
        case DepthBuffer::Seen::in_part:
          in_part_.push_back(face);
          break;
        case DepthBuffer::Seen::whole:
          whole_.push_back(face);
          break;
      }
    }
    std::ranges::stable_sort(in_part_, {}, [&](std::uint32_t face) { return depth(face); });
  }

  double depth(std::uint32_t number) const {
    double sum = 0;
    const auto nodes = shape_.faces[number].around();
    for (const auto node : nodes) sum += screen_[node].z();
    return sum / static_cast<double>(nodes.size());
  }

  // The side of a square as large as the visible faces are on average.
  double mean_size() const {
    double area = 0;
    for (const std::uint32_t face : whole_) {
      area += std::abs(geometry::area_on_screen(shape_.faces[face], screen_)) / 2;
    }
    return whole_.empty() ? 1000 : std::sqrt(area / static_cast<double>(whole_.size()));
  }

  int shade(std::uint32_t number) const {
    static const Point light = Point(-0.42, -0.62, 0.66).normalized();
    Point n = view_.project(geometry::normal(shape_, shape_.faces[number]));
    if (n.z() < 0) n = -n;
    const double bright = std::max(0.0, n.dot(light));
    return std::clamp(static_cast<int>(std::lround(bright * (shades - 1))), 0, shades - 1);
  }

  static std::string color(int shade) {
    constexpr std::array<double, 3> dark = {140, 154, 170};
    constexpr std::array<double, 3> bright = {231, 237, 243};
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text = "#";
    for (std::size_t i = 0; i < 3; ++i) {
      const double value = dark.at(i) + (bright.at(i) - dark.at(i)) * shade / (shades - 1);
      const auto byte = static_cast<unsigned>(std::lround(value));
      text += digits[byte >> 4U];
      text += digits[byte & 15U];
    }
    return text;
  }

  // The stroke closes the seams that smoothing leaves between areas side by side.
  static std::string fill(int shade) {
    const std::string c = color(shade);
    return "fill=\"" + c + "\" stroke=\"" + c + R"(" stroke-width=".7" stroke-linejoin="round")";
  }

  geometry::ScreenLine on_screen(const geometry::Polyline& line) const {
    geometry::ScreenLine result;
    result.reserve(line.size());
    for (const auto place : line) result.emplace_back(screen_[place].head<2>());
    return result;
  }

  // Far ones first, each over what lies behind it; neighbours of one colour in one path.
  std::string hidden_in_part(bool has_mesh_lines) {
    std::string text;
    std::string path;
    int before = -1;
    for (const std::uint32_t face : in_part_) {
      const int now = shade(face);
      if (now != before) text += in_part_element(path, before, has_mesh_lines);
      before = now;
      geometry::ScreenLine line;
      for (const Point& point : polygon(face)) line.emplace_back(point.head<2>());
      line.push_back(line.front());
      add_line(line, true, path);
    }
    return text + in_part_element(path, before, has_mesh_lines);
  }

  static std::string in_part_element(std::string& path, int shade, bool has_mesh_lines) {
    const std::string text = path_element(
        path, has_mesh_lines ? "fill=\"" + color(shade) + R"(" stroke="#a3adb8" stroke-width=".4")"
                             : fill(shade));
    path.clear();
    return text;
  }

  // What is seen as a whole lies before everything else, so that the order does not matter, and
  // faces of one colour become one area.
  std::string areas() {
    std::map<int, std::vector<std::uint32_t>> by_shade;
    for (const std::uint32_t face : whole_) by_shade[shade(face)].push_back(face);
    std::string text;
    for (const auto& [shade, faces] : by_shade) {
      std::string path;
      for (const auto& outline : geometry::outlines(shape_, faces, screen_)) {
        add_line(geometry::simplified(on_screen(outline), tolerance), true, path);
      }
      text += path_element(path, fill(shade));
    }
    return text;
  }

  std::string mesh_lines() const {
    std::string path;
    for (const auto& line : geometry::joined(geometry::edges_of(shape_, whole_), screen_)) {
      add_line(geometry::simplified(on_screen(line), tolerance), false, path);
    }
    return path_element(path, R"(fill="none" stroke="#8794a3" stroke-width=".4")");
  }

  std::string features() const {
    std::string path;
    const auto edges = geometry::feature_edges(shape_, view_.from());
    for (const auto& line : geometry::joined(edges, screen_)) add_visible(line, path);
    return path_element(path,
                        R"(fill="none" stroke="#37424e" stroke-width="1" stroke-linejoin="round")");
  }

  // The parts of a line that nothing hides.
  void add_visible(const geometry::Polyline& line, std::string& path) const {
    geometry::ScreenLine run;
    const auto finish = [&] {
      if (run.size() > 1) add_line(geometry::simplified(run, tolerance), false, path);
      run.clear();
    };
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
      const Point& begin = screen_[line[i]];
      const Point& end = screen_[line[i + 1]];
      const auto steps = std::max(
          1, static_cast<int>(std::ceil((end - begin).head<2>().norm() / step_along_edge)));
      for (int step = i == 0 ? 0 : 1; step <= steps; ++step) {
        const Point at = begin + (end - begin) * (static_cast<double>(step) / steps);
        if (buffer_.sees(at)) {
          run.emplace_back(at.head<2>());
        } else {
          finish();
        }
      }
    }
    finish();
  }

  // Beams and springs within a body are seen through it.
  std::string lines() const {
    std::string beams;
    std::string connectors;
    for (const bool is_connector : {false, true}) {
      std::vector<geometry::Segment> segments;
      for (const geometry::Line& line : shape_.lines) {
        if ((line.family == Family::connector) != is_connector) continue;
        const auto nodes = line.along();
        for (std::size_t i = 0; i + 1 < nodes.size(); ++i) {
          segments.push_back({nodes[i], nodes[i + 1]});
        }
      }
      for (const auto& line : geometry::joined(segments, screen_)) {
        add_line(geometry::simplified(on_screen(line), tolerance), false,
                 is_connector ? connectors : beams);
      }
    }
    return path_element(beams, R"(fill="none" stroke="#4a5866" stroke-width="3.2" )"
                               R"(stroke-linejoin="round" stroke-linecap="round")") +
           path_element(beams, R"(fill="none" stroke="#c9d3dd" stroke-width="1.4" )"
                               R"(stroke-linejoin="round")") +
           path_element(connectors, R"(fill="none" stroke="#6d4c41" stroke-width="1.6" )"
                                    R"(stroke-dasharray="4 2")");
  }

  std::string singles() const {
    std::vector<Spot> spots;
    for (const auto place : shape_.singles) spots.emplace_back(screen_[place].head<2>());
    return dots_svg(spots, R"(stroke="#37424e" stroke-width="5")");
  }

  const Shape& shape_;
  const geometry::View& view_;
  const std::vector<Point>& screen_;
  DepthBuffer& buffer_;
  std::vector<std::uint32_t> front_, in_part_, whole_;
  std::vector<Point> polygon_;
};

}  // namespace

std::string body_svg(const Shape& shape, const geometry::View& view, const Layout& layout,
                     DepthBuffer& buffer) {
  return Body(shape, view, layout, buffer).svg();
}

std::string dots_svg(const std::vector<Spot>& spots, const std::string& attributes) {
  std::string path;
  std::unordered_set<std::int64_t> taken;
  for (const Spot& at : spots) {
    const auto column = static_cast<std::int64_t>(std::floor(at.x() / 3));
    const auto row = static_cast<std::int64_t>(std::floor(at.y() / 3));
    if (taken.insert(column << 32 ^ row).second) path += 'M' + spot(at) + "h0";
  }
  return path_element(path, "stroke-linecap=\"round\" " + attributes);
}

}  // namespace picture
