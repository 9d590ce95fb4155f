#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "modeldb/odbc/loaded_order.h"

namespace modeldb {

/// Which rows to take at once where a transaction asks for one after the other, mostly in the order
/// of their keys, the reverse, or that in which they were loaded: one at first, and more as long as
/// those that were taken were wanted.
class Reach {
 public:
  /// How many, for a row that is not among those that were taken last.
  std::size_t next(std::int64_t key, LoadedOrder& loaded) {
    is_downward_ = last_ > key;
    last_ = key;
    if (taken_ > 1 && 2 * used_ < taken_) is_useless_ = true;
    taken_ = is_useless_ ? 1 : next_;
    used_ = 0;
    next_ = std::min(kFactor * next_, kMost);
    listed_ = taken_ > 1 ? loaded.from(key, taken_) : Keys();
    return taken_;
  }
  /// Their keys, when they are those in the order of loading.
  [[nodiscard]] const Keys& listed() const { return listed_; }
  /// Otherwise: whether they are those down from its key.
  [[nodiscard]] bool is_downward() const { return is_downward_; }
  /// The condition on the column that asks for them, and what stands behind it.
  [[nodiscard]] std::wstring condition(const std::wstring& column) const {
    if (!listed_.empty()) return condition_on(column, listed_) + L" ORDER BY " + column;
    return column + (is_downward_ ? L" <= " : L" >= ") + std::to_wstring(last_) + L" ORDER BY " +
           column + (is_downward_ ? L" DESC LIMIT " : L" LIMIT ") + std::to_wstring(taken_);
  }
  /// One of those that were taken was wanted.
  void note_use() { ++used_; }
  /// To take few the next time.
  void shrink() { next_ = std::min(next_, kFactor); }
  /// Those that were taken are not known any more.
  void forget() { taken_ = 0; }

 private:
  static constexpr std::size_t kFactor = 4;
  static constexpr std::size_t kMost = 1024;

  Keys listed_;
  std::int64_t last_ = INT64_MIN;  // for which they were taken
  bool is_downward_ = false;
  std::size_t next_ = 1;
  std::size_t taken_ = 0;
  std::size_t used_ = 0;
  bool is_useless_ = false;
};

}  // namespace modeldb
