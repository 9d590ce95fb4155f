#pragma once

#include <string>

#include "tools/deck/deck.h"

namespace deck {

/// Opens the deck, and included files beside it where their paths are relative.
OpenFile files_beside(const std::string& deck_path);

}  // namespace deck
