#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "tools/deck/record_rows.h"

namespace deck {

/// Which rows of the records are which rows of the deck.
struct Alignment {
  static constexpr std::size_t kGone = static_cast<std::size_t>(-1);

  /// For each row of the deck the row of the records that took its place, or kGone.
  std::vector<std::size_t> matched;
  /// New rows: how many rows of the deck stand before each, and its index. In the order of both.
  std::vector<std::pair<std::size_t, std::size_t>> added;
};

/// Rows with the same node, degrees of freedom and amplitude match in their order; values do not
/// matter.
Alignment align(const std::vector<const Row*>& deck_rows, const std::vector<RecordRow>& rows);

}  // namespace deck
