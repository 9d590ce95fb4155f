#include "tests/geometry/meshes.h"

#include <map>
#include <vector>

namespace tests {
namespace {

using Cell = std::array<int, 3>;

// A box on a grid of twice the cells, which has a point at the middle of every edge; of the points
// only those that an element names become nodes.
class Box {
 public:
  Box(const std::string& type, Cell cells, std::array<double, 3> lengths)
      : cells_(cells), lengths_(lengths) {
    mesh_.blocks.push_back({type, 0, {}, {}});
  }

  void add(const std::vector<Cell>& corners, const std::vector<std::pair<int, int>>& middles) {
    mesh::Block& block = mesh_.blocks.front();
    block.nodes_per_element = corners.size() + middles.size();
    block.ids.push_back(static_cast<int>(block.ids.size()) + 1);
    for (const Cell& corner : corners) block.nodes.push_back(node(corner));
    for (const auto& [a, b] : middles) {
      block.nodes.push_back(
          node({(corners[a][0] + corners[b][0]) / 2, (corners[a][1] + corners[b][1]) / 2,
                (corners[a][2] + corners[b][2]) / 2}));
    }
  }

  mesh::Mesh take() { return std::move(mesh_); }

 private:
  int node(const Cell& at) {
    const auto [found, is_new] = nodes_.emplace(at, static_cast<int>(nodes_.size()) + 1);
    if (is_new) {
      mesh_.node_ids.push_back(found->second);
      auto& point = mesh_.coordinates.emplace_back();
      for (int i = 0; i < 3; ++i) point[i] = lengths_[i] * at[i] / (2 * cells_[i]);
    }
    return found->second;
  }

  Cell cells_;
  std::array<double, 3> lengths_;
  std::map<Cell, int> nodes_;
  mesh::Mesh mesh_;
};

using Middles = std::vector<std::pair<int, int>>;

const Middles hexahedron_middles = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                    {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
const Middles wedge_middles = {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5},
                               {5, 3}, {0, 3}, {1, 4}, {2, 5}};
const Middles tetrahedron_middles = {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};

// How a cell is cut, by the numbers of its corners.
struct Cut {
  std::vector<std::vector<int>> pieces;
  Middles middles;
};

Cut cut_of(const std::string& type) {
  const std::string number = type.substr(3);
  const bool has_middles = number.starts_with("1") || number.starts_with("2");
  if (number.starts_with("8") || number.starts_with("20")) {
    return {{{0, 1, 2, 3, 4, 5, 6, 7}}, has_middles ? hexahedron_middles : Middles{}};
  }
  if (number.starts_with("6") || number.starts_with("15")) {
    return {{{0, 1, 2, 4, 5, 6}, {0, 2, 3, 4, 6, 7}}, has_middles ? wedge_middles : Middles{}};
  }
  // Six about the diagonal from corner 0 to corner 6, so that cells fit their neighbours.
  return {{{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}},
          has_middles ? tetrahedron_middles : Middles{}};
}

}  // namespace

mesh::Mesh box(const std::string& type, std::array<int, 3> cells, std::array<double, 3> lengths) {
  const Cut cut = cut_of(type);
  Box result(type, cells, lengths);
  for (int x = 0; x < 2 * cells[0]; x += 2) {
    for (int y = 0; y < 2 * cells[1]; y += 2) {
      for (int z = 0; z < 2 * cells[2]; z += 2) {
        const std::array<Cell, 8> corners = {
            Cell{x, y, z},     {x + 2, y, z},     {x + 2, y + 2, z},     {x, y + 2, z},
            Cell{x, y, z + 2}, {x + 2, y, z + 2}, {x + 2, y + 2, z + 2}, {x, y + 2, z + 2}};
        for (const auto& piece : cut.pieces) {
          std::vector<Cell> nodes;
          for (const int corner : piece) nodes.push_back(corners[corner]);
          result.add(nodes, cut.middles);
        }
      }
    }
  }
  return result.take();
}

mesh::Mesh plate(const std::string& type, std::array<int, 2> cells, double width, double height) {
  Box result(type, {cells[0], cells[1], 1}, {width, height, 1});
  for (int x = 0; x < 2 * cells[0]; x += 2) {
    for (int y = 0; y < 2 * cells[1]; y += 2) {
      result.add({{x, y, 0}, {x + 2, y, 0}, {x + 2, y + 2, 0}, {x, y + 2, 0}}, {});
    }
  }
  return result.take();
}

mesh::Mesh row(const std::string& type, int cells, double length) {
  Box result(type, {cells, 1, 1}, {length, 1, 1});
  for (int x = 0; x < 2 * cells; x += 2) result.add({{x, 0, 0}, {x + 2, 0, 0}}, {});
  return result.take();
}

}  // namespace tests
