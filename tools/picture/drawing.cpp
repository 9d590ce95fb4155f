#include "tools/picture/drawing.h"

#include "tools/picture/svg.h"

namespace picture {
namespace {

const char* attributes(Drawing::Style style) {
  switch (style) {
    case Drawing::Style::filled:
      return R"( fill="currentColor" stroke="#fff" stroke-width=".6")";
    case Drawing::Style::tinted:
      return R"( fill="#fff" stroke="currentColor" stroke-width=".9" fill-opacity=".75")";
    case Drawing::Style::open:
      return R"( fill="#fff" stroke="currentColor" stroke-width="1.2")";
    case Drawing::Style::line:
      break;
  }
  return R"( fill="none" stroke="currentColor" stroke-width="1.4" stroke-linejoin="round")";
}

}  // namespace

Drawing& Drawing::begin(Style style) {
  paths_.push_back({style, {}});
  return *this;
}

Drawing& Drawing::move(const Spot& to) {
  paths_.back().commands.push_back({'M', {to}});
  return *this;
}

Drawing& Drawing::line(const Spot& to) {
  paths_.back().commands.push_back({'L', {to}});
  return *this;
}

Drawing& Drawing::close() {
  paths_.back().commands.push_back({'Z', {}});
  return *this;
}

Drawing& Drawing::polygon(std::initializer_list<Spot> corners) {
  char letter = 'M';
  for (const Spot& corner : corners) {
    paths_.back().commands.push_back({letter, {corner}});
    letter = 'L';
  }
  return close();
}

Drawing& Drawing::ellipse(const Spot& centre, const Spot& u, const Spot& v) {
  constexpr double handle = 0.5523;  // of the Bézier curve that comes nearest to a quarter circle
  const std::array<Spot, 5> axes = {u, v, -u, -v, u};
  move(centre + u);
  for (std::size_t i = 0; i < 4; ++i) {
    const Spot& a = axes.at(i);
    const Spot& b = axes.at(i + 1);
    paths_.back().commands.push_back(
        {'C', {Spot(centre + a + handle * b), Spot(centre + b + handle * a), Spot(centre + b)}});
  }
  return close();
}

Drawing& Drawing::circle(const Spot& centre, double radius) {
  return ellipse(centre, {radius, 0}, {0, radius});
}

Drawing Drawing::turned(const Spot& direction) const {
  Drawing result = *this;
  for (Path& path : result.paths_) {
    for (Command& command : path.commands) {
      for (Spot& spot : command.spots) {
        spot = Spot(spot.x() * direction.x() - spot.y() * direction.y(),
                    spot.x() * direction.y() + spot.y() * direction.x());
      }
    }
  }
  return result;
}

Drawing::Bounds Drawing::bounds() const {
  Bounds bounds{Spot::Zero(), Spot::Zero()};
  for (const Path& path : paths_) {
    for (const Command& command : path.commands) {
      for (std::size_t i = 0; i < command.size(); ++i) {
        bounds.low = bounds.low.cwiseMin(command.spots.at(i));
        bounds.high = bounds.high.cwiseMax(command.spots.at(i));
      }
    }
  }
  return bounds;
}

std::string Drawing::svg(double size) const {
  std::string text;
  for (const Path& path : paths_) {
    text += "<path d=\"";
    for (const Command& command : path.commands) {
      text += command.letter;
      for (std::size_t i = 0; i < command.size(); ++i) {
        if (i > 0) text += ' ';
        text += svg::number(command.spots.at(i).x() * size) + ' ' +
                svg::number(command.spots.at(i).y() * size);
      }
    }
    text += '"';
    text += attributes(path.style);
    text += "/>";
  }
  return text;
}

}  // namespace picture
