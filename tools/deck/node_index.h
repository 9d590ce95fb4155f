#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace deck {

/// Where a node stands among all nodes. Most decks number their nodes without large gaps, for which
/// a plain vector serves; numbers far above the count of nodes go into a map.
class NodeIndex {
 public:
  /// Puts a node at a place, or finds the one that it has; true if it is new.
  std::pair<std::size_t, bool> insert(std::int32_t node, std::size_t place) {
    if (const auto known = find(node)) return {*known, false};
    ++count_;
    const auto at = static_cast<std::size_t>(node);
    if (at >= kMostGaps * (count_ + kFewNodes)) {
      sparse_.emplace(node, place);
      return {place, true};
    }
    if (at >= dense_.size()) dense_.resize(at + 1 + at / 2, kNone);
    dense_[at] = static_cast<std::uint32_t>(place);
    return {place, true};
  }

  [[nodiscard]] std::optional<std::size_t> find(std::int32_t node) const {
    const auto at = static_cast<std::size_t>(node);
    if (node >= 0 && at < dense_.size() && dense_[at] != kNone) return dense_[at];
    if (sparse_.empty()) return std::nullopt;
    const auto found = sparse_.find(node);
    return found == sparse_.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  static constexpr std::size_t kMostGaps = 8;
  static constexpr std::size_t kFewNodes = 128;
  static constexpr std::uint32_t kNone = UINT32_MAX;

  std::vector<std::uint32_t> dense_;
  std::unordered_map<std::int32_t, std::size_t> sparse_;
  std::size_t count_ = 0;
};

}  // namespace deck
