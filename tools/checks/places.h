#pragma once

#include <cmath>

#include "tools/content/loads.h"
#include "tools/deck/node_index.h"

namespace checks {

/// The coordinates of vertices, found by their keys.
class Places {
 public:
  explicit Places(const content::Vertices& vertices) : vertices_(vertices) {
    for (std::size_t i = 0; i < vertices.ids.size(); ++i) index_.insert(vertices.ids[i], i);
  }

  /// Nothing, if the vertex has none.
  [[nodiscard]] const content::Vector* of(content::Key vertex) const {
    const auto found = index_.find(vertex);
    if (!found) return nullptr;
    const content::Vector& place = vertices_.coordinates[*found];
    const bool is_known =
        std::isfinite(place[0]) && std::isfinite(place[1]) && std::isfinite(place[2]);
    return is_known ? &place : nullptr;
  }

 private:
  const content::Vertices& vertices_;
  deck::NodeIndex index_;
};

}  // namespace checks
