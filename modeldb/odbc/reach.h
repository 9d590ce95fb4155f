#pragma once

#include <algorithm>
#include <cstddef>

namespace modeldb {

/// How many rows to take at once where a transaction asks for one after the other, mostly in the
/// order of their keys: one at first, and more as long as those that were taken were wanted.
class Reach {
 public:
  /// For a row that is not among those that were taken last.
  std::size_t next() {
    if (taken_ > 1 && 2 * used_ < taken_) is_useless_ = true;
    taken_ = is_useless_ ? 1 : next_;
    used_ = 0;
    next_ = std::min(kFactor * next_, kMost);
    return taken_;
  }
  /// One of those that were taken was wanted.
  void note_use() { ++used_; }
  /// Those that were taken are not known any more.
  void forget() { taken_ = 0; }

 private:
  static constexpr std::size_t kFactor = 4;
  static constexpr std::size_t kMost = 1024;

  std::size_t next_ = 1;
  std::size_t taken_ = 0;
  std::size_t used_ = 0;
  bool is_useless_ = false;
};

}  // namespace modeldb
