#pragma once

#include "tools/deck/deck.h"
#include "tools/model/origin.h"

namespace automation {

/// What a model remembers of the deck at `path`; `source` tells which sets came from where.
model::Origin origin_of(const deck::Deck& deck, const content::Source& source,
                        const std::string& path);

}  // namespace automation
