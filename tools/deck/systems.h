#pragma once

#include <array>
#include <optional>

#include "tools/content/loads.h"
#include "tools/deck/deck.h"

namespace deck {

using Vector = std::array<double, 3>;

/// The components of a vector of the global system in the system of a transform at a place; nothing
/// where the transform has no axes.
std::optional<Vector> components_in(const Transform& transform, const Vector& place,
                                    const Vector& vector);

/// The axes of the deck's transforms at its nodes. The deck must live as long as the result.
content::LocalAxes axes_of(const Deck& deck);
/// The axes of the nodes' degrees of freedom, as the transforms turn them. Likewise.
content::NodeAxes node_axes_of(const Deck& deck);

}  // namespace deck
