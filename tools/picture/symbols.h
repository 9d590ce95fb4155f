#pragma once

#include <cstdint>
#include <vector>

#include "tools/picture/kinds.h"
#include "tools/picture/picture.h"

namespace picture {

/// A place in Scene::nodes.
using NodeIndex = std::uint32_t;

/// A record that is drawn.
struct Symbol {
  const content::Table* table = nullptr;
  std::uint32_t record = 0;
  NodeIndex node = 0;
  bool ends_at_node = true;  ///< its arrow, with its tip
  Mark mark;
};

/// The records that have one line of the legend.
struct Sort {
  const Kind* kind = nullptr;
  int variant = 0;
  std::vector<Symbol> symbols;
  double lowest = 0, highest = 0;  ///< of the marks' values
  double largest = 0;              ///< length of a vector
};

/// A node that carries records.
struct Carrier {
  content::Key id = 0;
  Point at = Point::Zero();
  Point outward = Point::Zero();  ///< away from the body, of length 1; 0 where nobody can tell
};

struct Symbols {
  std::vector<Carrier> nodes;
  std::vector<Sort> sorts;         ///< in the order in which they are painted
  std::size_t without_node = 0;    ///< records on nodes of which no coordinates are known
  std::size_t without_system = 0;  ///< records in coordinate systems that are not known
  checks::Resultant resultant;
};

/// Finds the records to draw, and the nodes that carry them.
Symbols find_symbols(const mesh::Mesh& mesh, const geometry::Shape& shape,
                     const content::Content& content, const Options& options);

}  // namespace picture
