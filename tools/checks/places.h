#pragma once

#include <cmath>

#include "tools/content/loads.h"
#include "tools/mesh/node_index.h"

namespace checks {

/// The coordinates of vertices, found by their keys.
class Places {
 public:
  explicit Places(const content::Vertices& vertices) : vertices_(vertices), index_(vertices.ids) {}

  /// Nothing, if the vertex has none.
  [[nodiscard]] const content::Vector* of(content::Key vertex) const {
    const std::uint32_t found = index_.of(vertex);
    if (found == mesh::NodeIndex::none) return nullptr;
    const content::Vector& place = vertices_.coordinates[found];
    const bool is_known =
        std::isfinite(place[0]) && std::isfinite(place[1]) && std::isfinite(place[2]);
    return is_known ? &place : nullptr;
  }

 private:
  const content::Vertices& vertices_;
  mesh::NodeIndex index_;
};

}  // namespace checks
