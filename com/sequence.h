#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

namespace com {

/// What a collection object holds: items in order, the position that each identifier had when it
/// was added, and one cursor for whoever walks the items.
///
/// The cursor is a position, not an iterator, so it never dangles. Items taken from the front leave
/// an empty place behind, so clearing a collection item by item is linear.
template <class Item>
class Sequence {
 public:
  static constexpr long kNotFound = -1;

  [[nodiscard]] std::size_t size() const { return items_.size() - taken_; }
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] const Item& operator[](std::size_t position) const {
    return items_[taken_ + position];
  }

  /// Appends an item. An identifier that is known already keeps its first position. An item whose
  /// position cannot be recorded for want of memory is not appended.
  void append(Item item, long id) {
    if (items_.size() == items_.capacity() && taken_ > size()) close_gap();
    items_.push_back(std::move(item));
    try {
      positions_.try_emplace(id, static_cast<long>(size() - 1));
    } catch (...) {
      items_.pop_back();
      throw;
    }
  }

  /// Takes the item at `position` out; later items move down, and the cursor stays at the gap. The
  /// recorded positions of the others are left as they are.
  Item take(std::size_t position) {
    cursor_ = position;
    Item item = std::move(items_[taken_ + position]);
    if (position == 0) {
      ++taken_;
      if (empty()) close_gap();
    } else {
      items_.erase(place(position));
    }
    return item;
  }

  /// Removes all items; the recorded positions stay.
  void drop_items() {
    cursor_ = 0;
    taken_ = 0;
    // The items leave the sequence before they are destroyed: a destructor may look at it.
    std::exchange(items_, {}).clear();
  }

  /// The position that `id` had when it was added, or kNotFound.
  [[nodiscard]] long position_of(long id) const {
    const auto found = positions_.find(id);
    return found == positions_.end() ? kNotFound : found->second;
  }
  void forget(long id) { positions_.erase(id); }

  void rewind() { cursor_ = 0; }
  void seek_end() { cursor_ = size(); }
  [[nodiscard]] bool at_end() const { return cursor_ >= size(); }
  /// The item at the cursor, which moves on; null at the end. Good until the sequence changes.
  const Item* next() { return at_end() ? nullptr : &items_[taken_ + cursor_++]; }

 private:
  auto place(std::size_t position) {
    return items_.begin() + static_cast<std::ptrdiff_t>(taken_ + position);
  }

  void close_gap() {
    items_.erase(items_.begin(), place(0));
    taken_ = 0;
  }

  std::vector<Item> items_;
  std::size_t taken_ = 0;  // from the front of items_, where they left nothing
  std::unordered_map<long, long> positions_;
  std::size_t cursor_ = 0;
};

}  // namespace com
