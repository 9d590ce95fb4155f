#include "tools/picture/glyphs.h"

#include <algorithm>
#include <cmath>

namespace picture::glyphs {
namespace {

using Style = Drawing::Style;

double cross(const Spot& a, const Spot& b) { return a.x() * b.y() - a.y() * b.x(); }

Spot flat(const Point& point) { return point.head<2>(); }

// Two directions at right angles to a direction and to each other.
struct Across {
  Point u, v;

  explicit Across(const Point& d) {
    const Point other = std::abs(d.z()) < 0.9 ? Point::UnitZ() : Point::UnitX();
    u = Point(d.y() * other.z() - d.z() * other.y(), d.z() * other.x() - d.x() * other.z(),
              d.x() * other.y() - d.y() * other.x())
            .normalized();
    v = Point(d.y() * u.z() - d.z() * u.y(), d.z() * u.x() - d.x() * u.z(),
              d.x() * u.y() - d.y() * u.x());
  }
};

// An arrow that comes towards the eye or goes away from it.
Drawing end_on(const Point& vector, const Arrow& arrow) {
  constexpr double radius = 0.26;
  Drawing drawing;
  drawing.begin(Style::open).circle({0, 0}, radius);
  if (arrow.heads == 2) drawing.begin(Style::line).circle({0, 0}, 1.45 * radius);
  if (vector.z() > 0) {
    drawing.begin(Style::filled).circle({0, 0}, 0.45 * radius);
  } else {
    const double r = 0.68 * radius;
    drawing.begin(Style::line).move({-r, -r}).line({r, r}).move({-r, r}).line({r, -r});
  }
  return drawing;
}

// A right-hand arrow from (begin, 0) to (end, 0).
void add_horizontal_arrow(double begin, double end, const Arrow& arrow, Drawing& drawing) {
  constexpr double shaft = 0.05;
  constexpr double wing = 0.17;
  const double head = std::min(0.42, 0.55 * (end - begin) / arrow.heads);
  drawing.begin(arrow.is_open ? Style::open : Style::filled);
  double neck = end - head;
  for (int i = 1; i < arrow.heads; ++i) {
    drawing.polygon({{neck, 0}, {neck - head, wing}, {neck - head, -wing}});
    neck -= head;
  }
  drawing.polygon({{begin, shaft}, {neck, shaft}, {neck, -shaft}, {begin, -shaft}});
  drawing.polygon({{end, 0}, {end - head, wing}, {end - head, -wing}});
  if (arrow.has_bar) drawing.begin(Style::line).move({begin, wing}).line({begin, -wing});
}

}  // namespace

Drawing arrow(const Point& vector, const Arrow& arrow) {
  const double length = flat(vector).norm();
  if (length < arrow.shortest) return end_on(vector, arrow);
  Drawing drawing;
  add_horizontal_arrow(arrow.ends_at_node ? -length : 0, arrow.ends_at_node ? 0 : length, arrow,
                       drawing);
  return drawing.turned(flat(vector) / length);
}

Drawing nothing() {
  Drawing drawing;
  drawing.begin(Style::line).circle({0, 0}, 0.16);
  return drawing;
}

void add_cone(const Point& direction, Drawing& drawing) {
  constexpr double height = 0.62;
  constexpr double radius = 0.23;
  const Across across(direction);
  const Spot centre = flat(direction) * height;
  const Spot u = flat(across.u) * radius;
  const Spot v = flat(across.v) * radius;

  // The two lines from the tip that touch the base's ellipse, unless the tip lies within it.
  const double a = cross(centre, v);
  const double b = -cross(centre, u);
  const double length = std::sqrt(a * a + b * b);
  const double cosine = length > 0 ? -cross(u, v) / length : 2;
  const bool is_base_in_front = direction.z() > 0;
  if (!is_base_in_front) drawing.begin(Style::filled).ellipse(centre, u, v);
  if (std::abs(cosine) < 1) {
    const double sine = std::sqrt(1 - cosine * cosine);
    const auto touching = [&](double s) {
      return Spot(centre + u * (a * cosine - b * s) / length + v * (b * cosine + a * s) / length);
    };
    drawing.begin(Style::filled).polygon({{0, 0}, touching(sine), touching(-sine)});
  } else {
    drawing.begin(Style::filled).circle({0, 0}, 0.08);
  }
  if (is_base_in_front) drawing.begin(Style::tinted).ellipse(centre, u, v);
}

void add_ring(const Point& direction, double distance, Drawing& drawing) {
  constexpr double radius = 0.36;
  const Across across(direction);
  drawing.begin(Style::line)
      .ellipse(flat(direction) * distance, flat(across.u) * radius, flat(across.v) * radius);
}

void add_block(const Point& direction, Drawing& drawing) {
  constexpr double half = 0.27;
  const Across across(direction);
  for (const double distance : {0.70, 0.84}) {
    const Spot centre = flat(direction) * distance;
    const Spot u = flat(across.u) * half;
    const Spot v = flat(across.v) * half;
    drawing.begin(Style::tinted).polygon({centre + u, centre + v, centre - u, centre - v});
  }
}

void add_spring(const Point& direction, Drawing& drawing) {
  const Spot along = flat(direction);
  const double length = along.norm();
  if (length < 0.3) {
    drawing.begin(Style::open).circle({0, 0}, 0.3);
    drawing.begin(Style::line).circle({0, 0}, 0.2).circle({0, 0}, 0.1);
    return;
  }
  const Spot side = Spot(-along.y(), along.x()) / length;
  const auto at = [&](double part, double aside) { return Spot(along * part + side * aside); };
  drawing.begin(Style::line).move({0, 0}).line(at(0.2, 0));
  double aside = 0.13;
  for (const double part : {0.28, 0.40, 0.52, 0.64, 0.76}) {
    drawing.line(at(part, aside));
    aside = -aside;
  }
  drawing.line(at(0.84, 0)).line(at(1, 0)).move(at(1, 0.28)).line(at(1, -0.28));
  for (const double mark : {-0.28, -0.09, 0.1}) {
    drawing.move(at(1, mark + 0.18)).line(at(1.12, mark));
  }
}

Drawing mass() {
  constexpr double r = 0.3;
  Drawing drawing;
  drawing.begin(Style::filled).circle({0, 0}, r);
  drawing.begin(Style::open)
      .polygon({{0, 0},
                {r, 0},
                {0.924 * r, -0.383 * r},
                {0.707 * r, -0.707 * r},
                {0.383 * r, -0.924 * r},
                {0, -r}})
      .polygon({{0, 0},
                {-r, 0},
                {-0.924 * r, 0.383 * r},
                {-0.707 * r, 0.707 * r},
                {-0.383 * r, 0.924 * r},
                {0, r}});
  return drawing;
}

Drawing thermometer(bool has_foot) {
  Drawing drawing;
  const double foot = has_foot ? 0.2 : 0;
  if (has_foot) drawing.begin(Style::filled).polygon({{0, 0}, {-0.2, -foot}, {0.2, -foot}});
  const double middle = -foot - 0.19;
  drawing.begin(Style::open)
      .polygon({{-0.09, middle}, {-0.09, middle - 0.62}, {0.09, middle - 0.62}, {0.09, middle}});
  drawing.begin(Style::filled)
      .polygon({{-0.05, middle}, {-0.05, middle - 0.42}, {0.05, middle - 0.42}, {0.05, middle}});
  drawing.begin(Style::filled).circle({0, middle}, 0.19);
  return drawing;
}

Drawing flame(bool is_sink) {
  Drawing drawing;
  drawing.begin(is_sink ? Style::open : Style::filled)
      .polygon({{0, 0},
                {-0.2, -0.08},
                {-0.28, -0.28},
                {-0.2, -0.48},
                {-0.06, -0.64},
                {-0.06, -0.86},
                {0.12, -0.68},
                {0.14, -0.5},
                {0.2, -0.58},
                {0.28, -0.34},
                {0.2, -0.08}});
  return drawing;
}

Drawing bolt(bool has_circle) {
  Drawing drawing;
  if (has_circle) drawing.begin(Style::open).circle({0, -0.42}, 0.44);
  drawing.begin(Style::filled)
      .polygon({{0, 0}, {-0.02, -0.36}, {-0.2, -0.36}, {0.06, -0.8}, {0.04, -0.48}, {0.22, -0.48}});
  return drawing;
}

Drawing current(bool leaves) {
  Drawing drawing;
  drawing.begin(Style::open).circle({0, -0.42}, 0.34);
  drawing.begin(Style::line).move({0, -0.08}).line({0, 0});
  const double tip = leaves ? -0.66 : -0.18;
  const double tail = leaves ? -0.18 : -0.66;
  const double wing = leaves ? tip + 0.2 : tip - 0.2;
  drawing.begin(Style::line).move({0, tail}).line({0, tip});
  drawing.move({-0.14, wing}).line({0, tip}).line({0.14, wing});
  return drawing;
}

Drawing charge(bool is_negative) {
  constexpr double r = 0.26;
  constexpr double arm = 0.15;
  constexpr double half = 0.045;
  Drawing drawing;
  drawing.begin(Style::filled).circle({0, 0}, r);
  drawing.begin(Style::open).polygon({{-arm, -half}, {arm, -half}, {arm, half}, {-arm, half}});
  if (!is_negative) {
    drawing.begin(Style::open).polygon({{-half, -arm}, {half, -arm}, {half, arm}, {-half, arm}});
  }
  return drawing;
}

Drawing probe() {
  Drawing drawing;
  drawing.begin(Style::line).move({0, 0}).line({0, -0.95});
  drawing.begin(Style::filled).polygon({{0, -0.95}, {0.48, -0.77}, {0, -0.59}});
  drawing.begin(Style::filled).circle({0, 0}, 0.08);
  return drawing;
}

Drawing in_outlet() {
  Drawing drawing;
  drawing.begin(Style::open).polygon({{-0.3, -0.3}, {0.3, -0.3}, {0.3, 0.3}, {-0.3, 0.3}});
  drawing.begin(Style::line);
  for (const double x : {-0.16, 0.08}) {
    drawing.move({x, -0.17}).line({x + 0.15, 0}).line({x, 0.17});
  }
  return drawing;
}

void add_velocity(const Point& vector, Drawing& drawing) {
  const Spot along = flat(vector);
  const double length = along.norm();
  if (length < 0.42) {
    drawing.begin(Style::open).circle({0, 0}, 0.26);
    drawing.begin(Style::line).circle({0, 0}, 0.16);
    return;
  }
  const Spot u = along / length;
  const Spot side(-u.y(), u.x());
  drawing.begin(Style::line).move({0, 0}).line(along);
  for (const double back : {0.0, 0.22}) {
    const Spot tip = along - u * back;
    drawing.move(tip - u * 0.24 + side * 0.16).line(tip).line(tip - u * 0.24 - side * 0.16);
  }
}

}  // namespace picture::glyphs
