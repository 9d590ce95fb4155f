#pragma once

#include <cstddef>
#include <string_view>

namespace deck {

/// How many nodes an element of a type has; 0 for a type that is not known.
std::size_t nodes_per_element(std::string_view type);

/// Whether nodes of such elements carry flows and pressures rather than displacements.
bool is_network_or_flow(std::string_view type);

}  // namespace deck
