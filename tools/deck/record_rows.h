#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/content/content.h"
#include "tools/deck/carried.h"
#include "tools/deck/deck.h"
#include "tools/deck/place.h"

namespace deck {

/// A row that a record asks for.
struct RecordRow {
  Row row;
  const content::Table* table = nullptr;
  std::size_t record = 0;  ///< index into the table
};

/// The rows of a place, kind by kind, in the order of the records' keys.
struct PlaceRows {
  Place place;
  std::array<std::vector<RecordRow>, kKinds> rows;
};

/// What a content asks a deck to say.
struct RecordRows {
  std::unordered_map<std::string, PlaceRows> places;  ///< by Place::key(); those that have a set
  std::vector<std::string> keys;                      ///< of the places, in the order of their sets
  std::vector<std::string> refusals;
  std::vector<std::string> remarks;
};

RecordRows rows_of(const Deck& deck, const Carried& carried, const content::Content& content,
                   const content::Source& source);

}  // namespace deck
