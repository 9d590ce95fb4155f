#pragma once

#include <string>

#include "tools/deck/deck.h"

namespace deck {

/// Fills the deck's files, lines and cards. Throws Error.
void read_lines(Deck& deck, const std::string& path, const OpenFile& open);

}  // namespace deck
