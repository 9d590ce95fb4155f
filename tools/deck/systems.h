#pragma once

#include "tools/content/loads.h"
#include "tools/deck/deck.h"

namespace deck {

/// The axes of the deck's transforms at its nodes. The deck must live as long as the result.
content::LocalAxes axes_of(const Deck& deck);
/// The axes of the nodes' degrees of freedom, as the transforms turn them. Likewise.
content::NodeAxes node_axes_of(const Deck& deck);

}  // namespace deck
