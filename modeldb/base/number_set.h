#pragma once

#include <iterator>
#include <map>

namespace modeldb {

/// A set of whole numbers that mostly follow each other, such as keys: it takes memory for each gap
/// between them, and not for each number.
class NumberSet {
  using Ranges = std::map<long, long>;  // from the first of them to the last

  /// That which holds the number; `ranges` may be constant or not.
  template <class AnyRanges>
  [[nodiscard]] static auto range_of(AnyRanges& ranges, long number) {
    auto found = ranges.upper_bound(number);
    if (found == ranges.begin()) return ranges.end();
    --found;
    return number <= found->second ? found : ranges.end();
  }

 public:
  /// False when it was there.
  bool insert(long number) {
    const auto next = ranges_.upper_bound(number);
    const auto before = next == ranges_.begin() ? ranges_.end() : std::prev(next);
    if (before != ranges_.end() && number <= before->second) return false;
    const bool joins_before = before != ranges_.end() && before->second == number - 1;
    const bool joins_next = next != ranges_.end() && next->first - 1 == number;
    const long last = joins_next ? next->second : number;
    if (joins_before) {
      before->second = last;
    } else {
      ranges_.emplace_hint(next, number, last);
    }
    if (joins_next) ranges_.erase(next);
    return true;
  }

  /// False when it was not there.
  bool erase(long number) {
    const auto found = range_of(ranges_, number);
    if (found == ranges_.end()) return false;
    const auto [first, last] = *found;
    if (number < last) ranges_.emplace(number + 1, last);
    if (first < number) {
      found->second = number - 1;
    } else {
      ranges_.erase(found);
    }
    return true;
  }

  [[nodiscard]] bool contains(long number) const {
    return range_of(ranges_, number) != ranges_.end();
  }

 private:
  Ranges ranges_;
};

}  // namespace modeldb
