#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace mesh {

/// Where a node stands in a list of nodes. Most decks number their nodes without large gaps, for
/// which a plain vector serves; numbers far above the count of nodes go into a map.
class NodeIndex {
 public:
  static constexpr std::uint32_t none = UINT32_MAX;

  NodeIndex() = default;
  /// The places of nodes in a list of them.
  explicit NodeIndex(std::span<const std::int32_t> nodes) {
    dense_.reserve(nodes.size() + 1);
    for (std::size_t place = 0; place < nodes.size(); ++place) insert(nodes[place], place);
  }

  /// Puts a node at a place, unless it has one; its place.
  std::uint32_t insert(std::int32_t node, std::size_t place) {
    if (const std::uint32_t known = of(node); known != none) return known;
    ++count_;
    const auto at = static_cast<std::size_t>(node);
    const auto number = static_cast<std::uint32_t>(place);
    if (node < 0 || at >= kMostGaps * (count_ + kFewNodes)) {
      sparse_.emplace(node, number);
      return number;
    }
    if (at >= dense_.size()) {
      if (at >= dense_.capacity()) dense_.reserve(at + 1 + at / 2);
      dense_.resize(at + 1, none);
    }
    dense_[at] = number;
    return number;
  }

  /// The place of a node, or none.
  [[nodiscard]] std::uint32_t of(std::int32_t node) const {
    const auto at = static_cast<std::size_t>(node);
    if (node >= 0 && at < dense_.size() && dense_[at] != none) return dense_[at];
    if (sparse_.empty()) return none;
    const auto found = sparse_.find(node);
    return found == sparse_.end() ? none : found->second;
  }

  [[nodiscard]] bool contains(std::int32_t node) const { return of(node) != none; }

 private:
  static constexpr std::size_t kMostGaps = 8;
  static constexpr std::size_t kFewNodes = 128;

  std::vector<std::uint32_t> dense_;
  std::unordered_map<std::int32_t, std::uint32_t> sparse_;
  std::size_t count_ = 0;
};

}  // namespace mesh
