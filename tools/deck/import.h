#pragma once

#include <vector>

#include "tools/content/content.h"
#include "tools/deck/deck.h"

namespace deck {

/// The nodal loads, supports and temperatures of a deck.
struct Imported {
  /// All nodes of the deck and the records of its cards. Sets are numbered from 1 in each table;
  /// records have no keys yet, and their order is that of the deck. Their vertices are nodes.
  content::Content content;
  content::Source source;
  std::vector<Remark> remarks;  ///< those of the deck, and which cards stay in the deck, and why
};

/// Never fails: what cannot be carried stays in the deck, and is a remark.
Imported import(const Deck& deck);

}  // namespace deck
