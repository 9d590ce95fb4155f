#include "tools/picture/symbols.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "tools/mesh/node_index.h"

namespace picture {
namespace {

using geometry::Shape;

// Away from the body at each of some points of a shape: the normals of solids, and where a surface
// or a line ends, away from its middle.
std::unordered_map<geometry::Place, Point> outward_at(
    const Shape& shape, const std::unordered_set<geometry::Place>& wanted) {
  std::unordered_map<geometry::Place, Point> sums;
  const auto add = [&](geometry::Place place, const Point& direction) {
    if (!wanted.contains(place)) return;
    sums.try_emplace(place, Point::Zero()).first->second += direction;
  };
  const auto add_from_middle = [&](std::span<const geometry::Place> nodes) {
    Point middle = Point::Zero();
    for (const auto node : nodes) middle += shape.points[node];
    middle /= static_cast<double>(nodes.size());
    double size = 0;
    for (const auto node : nodes) size = std::max(size, (shape.points[node] - middle).norm());
    if (size == 0) return;
    for (const auto node : nodes) add(node, (shape.points[node] - middle) / size);
  };
  for (const geometry::Face& face : shape.faces) {
    if (face.family == geometry::Family::solid) {
      const Point n = geometry::normal(shape, face);
      for (const auto node : face.around()) add(node, n);
    } else {
      add_from_middle(face.around());
    }
  }
  for (const geometry::Line& line : shape.lines) add_from_middle(line.along());
  for (auto& [place, sum] : sums) {
    // What remains within a surface, where its elements all but balance each other.
    const double length = sum.norm();
    sum = length > 0.3 ? Point(sum / length) : Point::Zero();
  }
  return sums;
}

bool is_number(const Point& point) {
  return point.allFinite() && point.cwiseAbs().maxCoeff() < 1e30;
}

class Finder {
 public:
  Finder(const mesh::Mesh& mesh, const Shape& shape, const content::Content& content,
         const Options& options)
      : shape_(shape),
        content_(content),
        options_(options),
        chosen_(in_sets(content, options.kinds, options.sets)),
        mesh_places_(mesh.node_ids),
        vertex_places_(content.vertices.ids) {
    result_.resultant.of = "Loads in the picture";
  }

  Symbols find() {
    for (const content::Table& table : content_.tables) {
      if (const Kind* kind = find_kind(table.name)) add(table, *kind);
    }
    for (auto& [key, sort] : sorts_) result_.sorts.push_back(std::move(sort));
    find_outward();
    for (Sort& sort : result_.sorts) {
      if (sort.kind->has_arrow) turn_arrows(sort);
    }
    return std::move(result_);
  }

 private:
  void add(const content::Table& table, const Kind& kind) {
    for (std::size_t record = 0; record < table.size(); ++record) {
      if (!chosen_(table, record)) continue;
      if (options_.filter && !options_.filter(table, record)) continue;
      add(table, record, kind);
    }
  }

  void add(const content::Table& table, std::size_t record, const Kind& kind) {
    const auto node = node_of(table.vertices[record]);
    if (!node) {
      ++result_.without_node;
      return;
    }
    const auto mark = kind.read(table, record, options_);
    if (!mark || !is_number(mark->vector)) {
      ++result_.without_system;
      return;
    }
    Sort& sort = sorts_[{&kind, mark->variant}];
    if (sort.symbols.empty()) {
      sort.kind = &kind;
      sort.variant = mark->variant;
      sort.lowest = sort.highest = mark->value;
    }
    sort.lowest = std::min(sort.lowest, mark->value);
    sort.highest = std::max(sort.highest, mark->value);
    sort.symbols.push_back({&table, static_cast<std::uint32_t>(record), *node, true, *mark});
    add_to_resultant(table, *mark, result_.nodes[*node].at);
  }

  void add_to_resultant(const content::Table& table, const Mark& mark, const Point& at) {
    const std::array<double, 3> vector = {mark.vector.x(), mark.vector.y(), mark.vector.z()};
    if (table.name == "NodalForces") {
      result_.resultant.add_force(vector, {at.x(), at.y(), at.z()});
    } else if (table.name == "NodalMoments") {
      result_.resultant.add_moment(vector);
    }
  }

  std::optional<NodeIndex> node_of(content::Key id) {
    const auto [known, is_new] = node_of_id_.try_emplace(id, mesh::NodeIndex::none);
    if (is_new) {
      if (const auto at = coordinates_of(id)) {
        known->second = static_cast<NodeIndex>(result_.nodes.size());
        result_.nodes.push_back({id, *at, Point::Zero()});
      }
    }
    if (known->second == mesh::NodeIndex::none) return {};
    return known->second;
  }

  std::optional<Point> coordinates_of(content::Key id) const {
    Point at;
    if (const auto place = mesh_places_.of(id); place != mesh::NodeIndex::none) {
      at = shape_.points[place];
    } else if (const auto vertex = vertex_places_.of(id); vertex != mesh::NodeIndex::none) {
      const auto& [x, y, z] = content_.vertices.coordinates[vertex];
      at = Point(x, y, z);
    } else {
      return {};
    }
    return is_number(at) ? std::optional(at) : std::nullopt;
  }

  void find_outward() {
    std::unordered_set<geometry::Place> wanted;
    for (const Carrier& node : result_.nodes) wanted.insert(mesh_places_.of(node.id));
    const auto outward = outward_at(shape_, wanted);
    for (Carrier& node : result_.nodes) {
      const auto found = outward.find(mesh_places_.of(node.id));
      if (found != outward.end()) node.outward = found->second;
    }
  }

  // Arrows stand outside the body: they point at what they push, and away from what they pull.
  // Those of one direction do so alike, as most of them would.
  void turn_arrows(Sort& sort) {
    std::map<std::array<int, 3>, int> pulls;
    const auto direction = [](const Mark& mark) {
      const Point unit = mark.vector.normalized() * 100;
      return std::array{static_cast<int>(std::lround(unit.x())),
                        static_cast<int>(std::lround(unit.y())),
                        static_cast<int>(std::lround(unit.z()))};
    };
    for (const Symbol& symbol : sort.symbols) {
      const double length = symbol.mark.vector.norm();
      sort.largest = std::max(sort.largest, length);
      if (length == 0) continue;
      const double cosine = result_.nodes[symbol.node].outward.dot(symbol.mark.vector) / length;
      pulls[direction(symbol.mark)] += cosine > 0.3 ? 1 : cosine < -0.3 ? -1 : 0;
    }
    for (Symbol& symbol : sort.symbols) symbol.ends_at_node = pulls[direction(symbol.mark)] <= 0;
  }

  const Shape& shape_;
  const content::Content& content_;
  const Options& options_;
  Filter chosen_;
  mesh::NodeIndex mesh_places_;
  mesh::NodeIndex vertex_places_;
  std::unordered_map<content::Key, NodeIndex> node_of_id_;
  std::map<std::pair<const Kind*, int>, Sort> sorts_;
  Symbols result_;
};

}  // namespace

Filter in_sets(const content::Content& content, const std::vector<std::string>& kinds,
               const std::vector<std::string>& sets) {
  std::map<std::string, std::unordered_set<content::Key>> ids;
  for (const content::SetTable& table : content.set_tables) {
    for (const content::Set& set : table.sets) {
      if (std::ranges::find(sets, set.name) != sets.end()) ids[table.name].insert(set.id);
    }
  }
  return [kinds, all = sets.empty(), ids = std::move(ids)](const content::Table& table,
                                                           std::size_t record) {
    if (!kinds.empty() && std::ranges::find(kinds, table.name) == kinds.end()) return false;
    if (all) return true;
    const auto found = ids.find(table.sets);
    return found != ids.end() && record < table.set_ids.size() &&
           std::ranges::any_of(table.set_ids[record],
                               [&](content::Key id) { return found->second.contains(id); });
  };
}

Symbols find_symbols(const mesh::Mesh& mesh, const Shape& shape, const content::Content& content,
                     const Options& options) {
  return Finder(mesh, shape, content, options).find();
}

}  // namespace picture
