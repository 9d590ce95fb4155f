#include "tools/model/axes.h"

#include <algorithm>

namespace model {

content::LocalAxes axes_of(std::vector<CoordinateSystem> systems,
                           const content::Vertices& vertices) {
  using content::Vector;
  return [systems = std::move(systems), &vertices](
             content::Key number, content::Key vertex) -> std::optional<std::array<Vector, 3>> {
    if (number == 0) return std::array{Vector{1, 0, 0}, Vector{0, 1, 0}, Vector{0, 0, 1}};
    const auto found = std::ranges::find(systems, number, &CoordinateSystem::number);
    if (found == systems.end()) return std::nullopt;
    if (!found->system.is_cylindrical) return content::axes_at(found->system, {});
    // They are in the order of their numbers.
    const auto at = std::ranges::lower_bound(vertices.ids, vertex);
    if (at == vertices.ids.end() || *at != vertex) return std::nullopt;
    const auto index = static_cast<std::size_t>(at - vertices.ids.begin());
    return content::axes_at(found->system, vertices.coordinates[index]);
  };
}

}  // namespace model
