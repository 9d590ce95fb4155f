#pragma once

#include "tools/deck/deck.h"

namespace deck {

/// Fills in what the cards define: nodes, elements, sets, amplitudes and transforms. Throws Error.
void read_model_part(Deck& deck);

}  // namespace deck
