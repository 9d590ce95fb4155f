#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace deck {

/// Where a node stands among all nodes. Most decks number their nodes without large gaps, for which
/// a plain vector serves.
class NodeIndex {
 public:
  /// Puts a node at a place, or finds the one that it has; true if it is new.
  std::pair<std::size_t, bool> insert(std::int32_t node, std::size_t place) {
    if (node < 0 || node >= kDense) {
      const auto [found, is_new] = sparse_.emplace(node, place);
      return {found->second, is_new};
    }
    const auto at = static_cast<std::size_t>(node);
    if (at >= dense_.size()) dense_.resize(at + 1 + at / 2, kNone);
    const bool is_new = dense_[at] == kNone;
    if (is_new) dense_[at] = static_cast<std::uint32_t>(place);
    return {dense_[at], is_new};
  }

  [[nodiscard]] std::optional<std::size_t> find(std::int32_t node) const {
    if (node < 0 || node >= kDense) {
      const auto found = sparse_.find(node);
      return found == sparse_.end() ? std::nullopt : std::optional(found->second);
    }
    const auto at = static_cast<std::size_t>(node);
    if (at >= dense_.size() || dense_[at] == kNone) return std::nullopt;
    return dense_[at];
  }

 private:
  static constexpr std::int32_t kDense = 1 << 24;
  static constexpr std::uint32_t kNone = UINT32_MAX;

  std::vector<std::uint32_t> dense_;
  std::unordered_map<std::int32_t, std::size_t> sparse_;
};

}  // namespace deck
