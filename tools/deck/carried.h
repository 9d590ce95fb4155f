#pragma once

#include <cstddef>
#include <vector>

#include "tools/deck/deck.h"
#include "tools/deck/kinds.h"
#include "tools/deck/place.h"

namespace deck {

/// A data line and the rows that it stands for: one for each node, or node and freedom.
struct CarriedLine {
  std::size_t line = 0;   ///< index into Deck::lines
  std::size_t begin = 0;  ///< index into CarriedCard::rows
  std::size_t end = 0;
  Kind kind = Kind::kForce;
};

/// A card of which every line can be carried by records.
struct CarriedCard {
  const Card* card = nullptr;
  Place place;
  content::Key amplitude = 0;
  std::vector<CarriedLine> lines;
  std::vector<Row> rows;
};

struct Carried {
  std::vector<CarriedCard> cards;
  std::vector<Remark> remarks;  ///< the other cards of loads, and why they stay in the deck
};

/// What the cards of a deck say of its nodes. They point into the deck.
Carried read_cards(const Deck& deck);

}  // namespace deck
