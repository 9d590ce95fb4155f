#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace mesh {

/// The elements of one type, such as "C3D8R", in the order in which a deck lists them.
struct Block {
  std::string type;  ///< as the deck names it, in capitals
  std::size_t nodes_per_element = 0;
  std::vector<std::int32_t> ids;    ///< one for each element
  std::vector<std::int32_t> nodes;  ///< nodes_per_element numbers of nodes for each element
};

/// Nodes and elements of a finite-element mesh, in the deck's unit of length.
struct Mesh {
  std::vector<std::int32_t> node_ids;              ///< each once
  std::vector<std::array<double, 3>> coordinates;  ///< of the node at the same place
  std::vector<Block> blocks;
};

}  // namespace mesh
