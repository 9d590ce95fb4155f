#include "tools/geometry/shape.h"

#include <algorithm>
#include <tuple>

#include "tools/geometry/grouped.h"
#include "tools/mesh/node_index.h"

namespace geometry {
namespace {

// The elements of a block, with places instead of numbers.
struct Solids {
  std::span<const ElementFace> faces;
  std::size_t nodes_per_element = 0;
  std::vector<Place> nodes;

  [[nodiscard]] std::size_t size() const { return nodes.size() / nodes_per_element; }
  [[nodiscard]] std::span<const Place> element(std::size_t i) const {
    return std::span(nodes).subspan(i * nodes_per_element, nodes_per_element);
  }
};

// A face of a solid by its corners in ascending order, by which the two sides of an inner face
// find each other. A triangle has no fourth corner.
struct Side {
  Place first, second, third, fourth;
  std::uint32_t element;  // among the solids
  std::uint8_t face;

  [[nodiscard]] auto corners() const { return std::tie(first, second, third, fourth); }
  bool operator<(const Side& other) const { return corners() < other.corners(); }
};

// False for a face without three corners, which a hexahedron has that was made a wedge by naming
// nodes twice.
bool find_corners(std::span<const Place> element, const ElementFace& face, Side& side) {
  std::array<Place, 4> corners{};
  std::size_t size = 0;
  for (std::size_t i = 0; i < face.size; i += face.has_middles ? 2 : 1) {
    corners.at(size++) = element[face.nodes.at(i)];
  }
  std::sort(corners.begin(), corners.begin() + size);
  size = std::unique(corners.begin(), corners.begin() + size) - corners.begin();
  if (size < 3) return false;
  side.first = corners[0];
  side.second = corners[1];
  side.third = corners[2];
  side.fourth = size == 4 ? corners[3] : mesh::NodeIndex::none;
  return true;
}

Face make_face(std::span<const Place> element, const ElementFace& topology, Family family) {
  Face face;
  face.size = topology.size;
  face.has_middles = topology.has_middles;
  face.family = family;
  for (std::size_t i = 0; i < topology.size; ++i) face.nodes.at(i) = element[topology.nodes.at(i)];
  return face;
}

// An element with a negative volume, which a solver refuses, is drawn all the same.
void turn_outwards(const Shape& shape, std::span<const Place> element, Face& face) {
  Point inside = Point::Zero();
  for (const Place node : element) inside += shape.points[node];
  inside /= static_cast<double>(element.size());
  Point middle = Point::Zero();
  for (const Place node : face.around()) middle += shape.points[node];
  middle /= face.size;
  if (normal(shape, face).dot(middle - inside) < 0) {
    std::reverse(face.nodes.begin() + 1, face.nodes.begin() + face.size);
  }
}

void add_outer_faces(const std::vector<Solids>& blocks, Shape& shape) {
  const auto sides = grouped<Side>(shape.points.size(), [&](const auto& add) {
    Side side{};
    for (const Solids& block : blocks) {
      for (std::size_t i = 0; i < block.size(); ++i, ++side.element) {
        for (side.face = 0; side.face < block.faces.size(); ++side.face) {
          if (find_corners(block.element(i), block.faces[side.face], side)) add(side);
        }
      }
    }
  });
  std::vector<std::pair<std::uint32_t, std::uint8_t>> outer;
  for (auto side = sides.begin(); side != sides.end();) {
    const auto end = std::find_if(side + 1, sides.end(), [&](const Side& other) {
      return other.corners() != side->corners();
    });
    if (end - side == 1) outer.emplace_back(side->element, side->face);
    side = end;
  }
  std::sort(outer.begin(), outer.end());

  std::uint32_t before = 0;
  auto block = blocks.begin();
  for (const auto& [number, index] : outer) {
    while (number - before >= block->size()) before += (block++)->size();
    const auto element = block->element(number - before);
    Face face = make_face(element, block->faces[index], Family::solid);
    turn_outwards(shape, element, face);
    shape.faces.push_back(face);
  }
}

void add_line(std::span<const Place> element, Family family, Shape& shape) {
  Line line;
  line.size = element.size();
  line.family = family;
  std::copy(element.begin(), element.end(), line.nodes.begin());
  shape.lines.push_back(line);
}

// The end of a network has no node: the deck writes 0.
bool is_open_end(const mesh::Block& block, std::int32_t id) {
  return id == 0 && block.nodes_per_element == 3;
}

class Builder {
 public:
  explicit Builder(const mesh::Mesh& mesh) : mesh_(mesh), places_(mesh.node_ids) {}

  Shape build() {
    shape_.points.reserve(mesh_.coordinates.size());
    for (const auto& [x, y, z] : mesh_.coordinates) shape_.points.emplace_back(x, y, z);
    for (const mesh::Block& block : mesh_.blocks) add(block);
    add_outer_faces(solids_, shape_);
    return std::move(shape_);
  }

 private:
  void add(const mesh::Block& block) {
    const ElementType type = describe(block.type, block.nodes_per_element);
    if (type.family == Family::solid) {
      solids_.push_back({type.faces, block.nodes_per_element, {}});
      solids_.back().nodes.reserve(block.nodes.size());
    }
    std::vector<Place> element;
    for (std::size_t i = 0; i < block.ids.size(); ++i) {
      ++shape_.elements;
      if (find_nodes(block, i, element)) {
        add(type, element);
      } else {
        ++shape_.elements_without_node;
      }
    }
  }

  bool find_nodes(const mesh::Block& block, std::size_t i, std::vector<Place>& element) const {
    element.clear();
    const auto ids =
        std::span(block.nodes).subspan(i * block.nodes_per_element, block.nodes_per_element);
    for (const std::int32_t id : ids) {
      if (is_open_end(block, id)) continue;
      element.push_back(places_.of(id));
    }
    return !element.empty() && std::ranges::find(element, mesh::NodeIndex::none) == element.end();
  }

  void add(const ElementType& type, std::span<const Place> element) {
    switch (type.family) {
      case Family::solid:
        solids_.back().nodes.insert(solids_.back().nodes.end(), element.begin(), element.end());
        break;
      case Family::surface:
      case Family::plane:
      case Family::axisymmetric:
        for (const ElementFace& face : type.faces) {
          shape_.faces.push_back(make_face(element, face, type.family));
        }
        break;
      case Family::line:
      case Family::connector:
        add_line(element, type.family, shape_);
        break;
      case Family::point:
        shape_.singles.insert(shape_.singles.end(), element.begin(), element.end());
        break;
    }
  }

  const mesh::Mesh& mesh_;
  mesh::NodeIndex places_;
  Shape shape_;
  std::vector<Solids> solids_;
};

}  // namespace

Shape shape_of(const mesh::Mesh& mesh) { return Builder(mesh).build(); }

Point normal(const Shape& shape, const Face& face) {
  const auto nodes = face.around();
  const Point& origin = shape.points[nodes[0]];
  // Twice the area of the polygon, which need not be plane.
  Point area = Point::Zero();
  for (std::size_t i = 1; i + 1 < nodes.size(); ++i) {
    const Point a = shape.points[nodes[i]] - origin;
    const Point b = shape.points[nodes[i + 1]] - origin;
    area += Point(a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(),
                  a.x() * b.y() - a.y() * b.x());
  }
  const double length = area.norm();
  return length > 0 ? Point(area / length) : Point::Zero();
}

}  // namespace geometry
