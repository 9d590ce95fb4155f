#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace modeldb {

/// In their order, and none twice.
using Keys = std::vector<std::int64_t>;

/// A condition that asks for the rows with these keys, and perhaps some between them.
std::wstring condition_on(const std::wstring& path, const Keys& keys);

/// The keys of rows in the order in which they were loaded last: what was loaded in an order is
/// mostly changed in it.
class LoadedOrder {
 public:
  void begin() noexcept {
    keys_.clear();
    next_ = 0;
    is_ascending_ = true;
  }
  void add(std::int64_t key) {
    if (!keys_.empty() && key < keys_.back()) is_ascending_ = false;
    keys_.push_back(key);
  }
  /// They are complete. An order that any range of keys has is none to remember.
  void end() noexcept {
    if (is_ascending_) keys_ = {};
  }

  /// This key and those behind it, some in all; none when it was not loaded.
  [[nodiscard]] Keys from(std::int64_t key, std::size_t count);

 private:
  std::vector<std::int64_t> keys_;
  std::size_t next_ = 0;  // behind those that were given last
  bool is_ascending_ = true;
};

}  // namespace modeldb
