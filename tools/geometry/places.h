#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <unordered_map>
#include <vector>

namespace geometry {

/// Finds the place of a node's number in a list of numbers.
class Places {
 public:
  static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

  explicit Places(std::span<const std::int32_t> ids) {
    std::int64_t highest = 0;
    for (const std::int32_t id : ids) highest = std::max<std::int64_t>(highest, id);
    // Decks number their nodes nearly without gaps, so that a table serves.
    if (highest < 8 * static_cast<std::int64_t>(ids.size()) + 1000)
      table_.resize(highest + 1, none);
    for (std::size_t place = 0; place < ids.size(); ++place) {
      add(ids[place], static_cast<std::uint32_t>(place));
    }
  }

  /// The place of the number, or none.
  [[nodiscard]] std::uint32_t of(std::int32_t id) const {
    if (id >= 0 && static_cast<std::size_t>(id) < table_.size()) return table_[id];
    const auto found = others_.find(id);
    return found == others_.end() ? none : found->second;
  }

 private:
  void add(std::int32_t id, std::uint32_t place) {
    if (id >= 0 && static_cast<std::size_t>(id) < table_.size()) {
      table_[id] = place;
    } else {
      others_[id] = place;
    }
  }

  std::vector<std::uint32_t> table_;
  std::unordered_map<std::int32_t, std::uint32_t> others_;
};

}  // namespace geometry
