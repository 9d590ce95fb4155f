#include "tools/geometry/edges.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/geometry/grouped.h"
#include "tools/mesh/node_index.h"

namespace geometry {
namespace {

constexpr double cosine_of_bend = 0.866;  // 30 degrees

// An edge of a face, the lower of its corners first.
struct FaceEdge {
  Place first, second, middle;
  std::uint32_t face;

  [[nodiscard]] bool is_same_as(const FaceEdge& other) const {
    return first == other.first && second == other.second;
  }
  bool operator<(const FaceEdge& other) const {
    if (second != other.second) return second < other.second;
    return face < other.face;
  }
};

template <class Faces, class Add>
void for_each_edge(const Shape& shape, const Faces& faces, const Add& add) {
  for (const std::uint32_t number : faces) {
    const Face& face = shape.faces[number];
    const std::size_t step = face.has_middles ? 2 : 1;
    for (std::size_t i = 0; i < face.size; i += step) {
      const Place a = face.nodes.at(i);
      const Place b = face.nodes.at((i + step) % face.size);
      if (a == b) continue;
      add(FaceEdge{std::min(a, b), std::max(a, b),
                   face.has_middles ? face.nodes.at(i + 1) : mesh::NodeIndex::none, number});
    }
  }
}

void add_segments(const FaceEdge& edge, std::vector<Segment>& segments) {
  if (edge.middle == mesh::NodeIndex::none) {
    segments.push_back({edge.first, edge.second});
  } else {
    segments.push_back({edge.first, edge.middle});
    segments.push_back({edge.middle, edge.second});
  }
}

struct Numbers {
  std::uint32_t count;
  struct Iterator {
    std::uint32_t value;
    std::uint32_t operator*() const { return value; }
    Iterator& operator++() { return ++value, *this; }
    bool operator!=(const Iterator& other) const { return value != other.value; }
  };
  [[nodiscard]] Iterator begin() const { return {0}; }
  [[nodiscard]] Iterator end() const { return {count}; }
};

// Two faces that meet at an edge.
bool is_feature(const Face& one, const Face& other, const Point& normal_of_one,
                const Point& normal_of_other, const Point& from) {
  if (one.family != other.family) return true;
  double cosine = normal_of_one.dot(normal_of_other);
  double turn = normal_of_one.dot(from) * normal_of_other.dot(from);
  // Nothing tells the two sides of a shell apart: neighbours may list their nodes either way.
  if (one.family != Family::solid && cosine < 0) {
    cosine = -cosine;
    turn = -turn;
  }
  return cosine < cosine_of_bend || turn < 0;
}

}  // namespace

std::vector<Segment> feature_edges(const Shape& shape, const Point& from) {
  std::vector<Point> normals;
  normals.reserve(shape.faces.size());
  for (const Face& face : shape.faces) normals.push_back(normal(shape, face));

  const Numbers all{static_cast<std::uint32_t>(shape.faces.size())};
  const auto edges = grouped<FaceEdge>(shape.points.size(),
                                       [&](const auto& add) { for_each_edge(shape, all, add); });
  std::vector<Segment> result;
  for (auto edge = edges.begin(); edge != edges.end();) {
    const auto end = std::find_if(edge + 1, edges.end(),
                                  [&](const FaceEdge& other) { return !other.is_same_as(*edge); });
    const bool has_two = end - edge == 2;
    const std::uint32_t one = edge->face;
    const std::uint32_t other = (end - 1)->face;
    if (!has_two ||
        is_feature(shape.faces[one], shape.faces[other], normals[one], normals[other], from)) {
      add_segments(*edge, result);
    }
    edge = end;
  }
  return result;
}

std::vector<Segment> edges_of(const Shape& shape, std::span<const std::uint32_t> faces) {
  const auto edges = grouped<FaceEdge>(shape.points.size(),
                                       [&](const auto& add) { for_each_edge(shape, faces, add); });
  std::vector<Segment> result;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (i == 0 || !edges[i].is_same_as(edges[i - 1])) add_segments(edges[i], result);
  }
  return result;
}

double area_on_screen(const Face& face, std::span<const Point> screen) {
  double area = 0;
  Place before = face.nodes.at(face.size - 1);
  for (const Place node : face.around()) {
    area += screen[before].x() * screen[node].y() - screen[before].y() * screen[node].x();
    before = node;
  }
  return area;
}

namespace {

// A piece of a face's edge in the direction in which the face goes round.
struct Directed {
  Place first, second;
  bool operator<(const Directed& other) const { return second < other.second; }
};

// Without those that two faces have in common: they go along them in opposite directions.
std::vector<Directed> outer_edges(const Shape& shape, std::span<const std::uint32_t> faces,
                                  std::span<const Point> screen) {
  const auto generate = [&](const auto& add) {
    for (const std::uint32_t number : faces) {
      const Face& face = shape.faces[number];
      const bool is_clockwise = area_on_screen(face, screen) > 0;
      Place before = face.nodes.at(face.size - 1);
      for (const Place node : face.around()) {
        if (node != before) add(is_clockwise ? Directed{before, node} : Directed{node, before});
        before = node;
      }
    }
  };
  auto edges = grouped<Directed>(shape.points.size(), generate);
  std::vector<std::uint32_t> begins(shape.points.size() + 1, 0);
  for (const Directed& edge : edges) ++begins[edge.first + 1];
  for (std::size_t i = 1; i < begins.size(); ++i) begins[i] += begins[i - 1];

  std::vector<bool> is_inner(edges.size(), false);
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (is_inner[i]) continue;
    const Directed& edge = edges[i];
    for (std::uint32_t j = begins[edge.second]; j < begins[edge.second + 1]; ++j) {
      if (edges[j].second != edge.first || is_inner[j]) continue;
      is_inner[i] = is_inner[j] = true;
      break;
    }
  }
  std::size_t kept = 0;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (!is_inner[i]) edges[kept++] = edges[i];
  }
  edges.resize(kept);
  return edges;
}

}  // namespace

std::vector<Polyline> outlines(const Shape& shape, std::span<const std::uint32_t> faces,
                               std::span<const Point> screen) {
  const auto edges = outer_edges(shape, faces, screen);
  std::vector<bool> is_used(edges.size(), false);
  const auto next_from = [&](Place place) -> std::size_t {
    auto edge = std::ranges::lower_bound(edges, place, {}, &Directed::first);
    while (edge != edges.end() && edge->first == place && is_used[edge - edges.begin()]) ++edge;
    return edge != edges.end() && edge->first == place ? edge - edges.begin() : edges.size();
  };
  // As many edges end at a place as begin there, so that every walk comes back to its beginning.
  std::vector<Polyline> result;
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (is_used[i]) continue;
    Polyline line = {edges[i].first};
    for (std::size_t edge = i; edge < edges.size(); edge = next_from(line.back())) {
      is_used[edge] = true;
      line.push_back(edges[edge].second);
    }
    result.push_back(std::move(line));
  }
  return result;
}

namespace {

// One end of a segment.
struct End {
  Place first, other;
  std::uint32_t segment;
  bool operator<(const End& end) const { return segment < end.segment; }
};

class Joiner {
 public:
  Joiner(std::span<const Segment> segments, std::span<const Point> screen)
      : segments_(segments), screen_(screen), is_used_(segments.size(), false) {
    ends_ = grouped<End>(screen.size(), [&](const auto& add) {
      for (std::uint32_t i = 0; i < segments.size(); ++i) {
        add(End{segments[i][0], segments[i][1], i});
        add(End{segments[i][1], segments[i][0], i});
      }
    });
  }

  std::vector<Polyline> join() {
    std::vector<Polyline> result;
    for (std::size_t i = 0; i < segments_.size(); ++i) {
      if (is_used_[i]) continue;
      is_used_[i] = true;
      Polyline line = {segments_[i][1], segments_[i][0]};
      extend(line);
      std::ranges::reverse(line);
      extend(line);
      result.push_back(std::move(line));
    }
    return result;
  }

 private:
  void extend(Polyline& line) {
    while (const End* end = straightest(line[line.size() - 2], line.back())) {
      is_used_[end->segment] = true;
      line.push_back(end->other);
    }
  }

  const End* straightest(Place before, Place at) const {
    const End* best = nullptr;
    double best_cosine = -std::numeric_limits<double>::infinity();
    auto end = std::ranges::lower_bound(ends_, at, {}, &End::first);
    for (; end != ends_.end() && end->first == at; ++end) {
      if (is_used_[end->segment]) continue;
      const Eigen::Vector2d came = (screen_[at] - screen_[before]).head<2>();
      const Eigen::Vector2d goes = (screen_[end->other] - screen_[at]).head<2>();
      const double length = came.norm() * goes.norm();
      const double cosine = length > 0 ? came.dot(goes) / length : 0;
      if (cosine <= best_cosine) continue;
      best_cosine = cosine;
      best = &*end;
    }
    return best;
  }

  std::span<const Segment> segments_;
  std::span<const Point> screen_;
  std::vector<bool> is_used_;
  std::vector<End> ends_;
};

}  // namespace

std::vector<Polyline> joined(std::span<const Segment> segments, std::span<const Point> screen) {
  return Joiner(segments, screen).join();
}

}  // namespace geometry
