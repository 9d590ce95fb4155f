#pragma once

#include <string>
#include <vector>

#include "tools/content/content.h"
#include "tools/deck/deck.h"

namespace deck {

struct ExportOptions {
  /// Accept a deck that is not the one from which the records came: cards are found by step,
  /// keyword and parameters, amplitudes by name.
  bool other_deck = false;
  /// Write a row for every record, even where a line of the deck says the same already.
  bool every_row = false;
};

/// A number for which 20 characters, all that the solver reads, are too few.
struct Rounded {
  std::string record;  ///< "NodalForce 12 'Tip load'"
  double value = 0;
  std::string text;  ///< what was written
};

struct Exported {
  std::string text;                   ///< the deck; empty if anything was refused
  std::vector<std::string> refusals;  ///< sentences that name the record, the set or the deck
  std::vector<std::string> remarks;   ///< what the deck does not carry, as sentences
  std::vector<Rounded> rounded;
};

/// The deck with the records of the content in place of its own. The source says what came from
/// where; records and sets have their keys. Only the lines that changed are written anew. Included
/// files are left alone: the text is that of the deck's first file.
Exported write(const Deck& deck, const content::Content& content, const content::Source& source,
               const ExportOptions& options = {});

}  // namespace deck
