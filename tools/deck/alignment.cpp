#include "tools/deck/alignment.h"

#include <cstdint>
#include <unordered_map>

namespace deck {
namespace {

struct Identity {
  std::uint64_t node_and_freedoms;
  content::Key amplitude;

  explicit Identity(const Row& row)
      : node_and_freedoms(static_cast<std::uint64_t>(row.node) << 8 |
                          static_cast<std::uint64_t>(row.first) << 4 | row.last),
        amplitude(row.amplitude) {}

  bool operator==(const Identity&) const = default;
};

struct Hash {
  std::size_t operator()(const Identity& identity) const {
    const std::uint64_t mixed =
        (identity.node_and_freedoms ^ static_cast<std::uint64_t>(identity.amplitude) << 40) *
        0x9e3779b97f4a7c15;
    return static_cast<std::size_t>(mixed ^ mixed >> 32);
  }
};

/// How many rows of each identity are still to come.
using Counts = std::unordered_map<Identity, std::size_t, Hash>;

bool comes_later(const Counts& counts, const Identity& identity) {
  const auto found = counts.find(identity);
  return found != counts.end() && found->second > 0;
}

}  // namespace

Alignment align(const std::vector<const Row*>& deck_rows, const std::vector<RecordRow>& rows) {
  Alignment result;
  result.matched.assign(deck_rows.size(), Alignment::kGone);
  Counts in_deck;
  Counts in_records;
  bool counted = false;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < deck_rows.size() && j < rows.size()) {
    const Identity expected(*deck_rows[i]);
    const Identity actual(rows[j].row);
    if (!counted && !(expected == actual)) {
      // Counting is only for decks and records that differ, and only from there on.
      for (std::size_t k = i; k < deck_rows.size(); ++k) ++in_deck[Identity(*deck_rows[k])];
      for (std::size_t k = j; k < rows.size(); ++k) ++in_records[Identity(rows[k].row)];
      counted = true;
    }
    if (expected == actual) {
      result.matched[i++] = j++;
      if (counted) --in_deck[expected], --in_records[actual];
    } else if (!comes_later(in_records, expected) || comes_later(in_deck, actual)) {
      ++i;
      --in_deck[expected];
    } else {
      result.added.emplace_back(i, j++);
      --in_records[actual];
    }
  }
  while (j < rows.size()) result.added.emplace_back(deck_rows.size(), j++);
  return result;
}

}  // namespace deck
