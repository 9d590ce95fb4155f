#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace geometry {

/// Sorts entries by their member `first`, which is below `firsts`, and then by operator<. The
/// generator is called twice with a function that takes an entry, and hands over the same entries
/// in both calls. Counting them first is several times as fast as sorting millions at once.
template <class Entry, class Generator>
std::vector<Entry> grouped(std::size_t firsts, const Generator& generate) {
  std::vector<std::uint32_t> ends(firsts + 1, 0);
  generate([&](const Entry& entry) { ++ends[entry.first + 1]; });
  for (std::size_t i = 1; i <= firsts; ++i) ends[i] += ends[i - 1];

  std::vector<Entry> entries(ends[firsts]);
  std::vector<std::uint32_t> next(ends.begin(), ends.end() - 1);
  generate([&](const Entry& entry) { entries[next[entry.first]++] = entry; });
  for (std::size_t i = 0; i < firsts; ++i) {
    std::sort(entries.begin() + ends[i], entries.begin() + ends[i + 1]);
  }
  return entries;
}

}  // namespace geometry
