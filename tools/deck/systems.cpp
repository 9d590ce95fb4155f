#include "tools/deck/systems.h"

#include "tools/content/axes.h"

namespace deck {

content::LocalAxes axes_of(const Deck& deck) {
  return [&deck](content::Key number,
                 content::Key node) -> std::optional<std::array<content::Vector, 3>> {
    const std::uint32_t place = deck.index_of_node.of(node);
    const auto index = static_cast<std::size_t>(number) - 1;
    if (place == mesh::NodeIndex::none || index >= deck.transforms.size()) return std::nullopt;
    return content::axes_at(deck.transforms[index].system, deck.mesh.coordinates[place]);
  };
}

content::NodeAxes node_axes_of(const Deck& deck) {
  return [&deck, axes = axes_of(deck)](
             content::Key node) -> std::optional<std::array<content::Vector, 3>> {
    const auto found = deck.transform_of_node.find(node);
    if (found == deck.transform_of_node.end()) return std::nullopt;
    return axes(found->second, node);
  };
}

}  // namespace deck
