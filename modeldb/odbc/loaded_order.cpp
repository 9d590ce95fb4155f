#include "modeldb/odbc/loaded_order.h"

#include <algorithm>

namespace modeldb {

/// "path BETWEEN 7 AND 9", where nearly all between them are asked for, or a list: with a list
/// alone the server would go through all of the table.
std::wstring condition_on(const std::wstring& path, const Keys& keys) {
  constexpr double kNearlyAll = 1.25;
  constexpr double kFew = 8;
  const auto width = static_cast<double>(keys.back() - keys.front());
  const double spread = width / static_cast<double>(keys.size());
  const std::wstring range =
      path + L" BETWEEN " + std::to_wstring(keys.front()) + L" AND " + std::to_wstring(keys.back());
  if (spread < kNearlyAll) return range;
  std::wstring list = path + L" = ANY ('{";
  for (const std::int64_t key : keys) list += std::to_wstring(key) + L',';
  list.back() = L'}';
  list += L"'::integer[])";
  return spread < kFew ? range + L" AND " + list : list;
}

Keys LoadedOrder::from(std::int64_t key, std::size_t count) {
  const auto begin = keys_.begin() + static_cast<std::ptrdiff_t>(next_);
  auto place = std::find(begin, keys_.end(), key);
  if (place == keys_.end()) place = std::find(keys_.begin(), begin, key);
  if (place == keys_.end() || *place != key) return {};
  const auto left = static_cast<std::size_t>(keys_.end() - place);
  const auto end = place + static_cast<std::ptrdiff_t>(std::min(count, left));
  next_ = static_cast<std::size_t>(end - keys_.begin());
  Keys keys(place, end);
  std::ranges::sort(keys);
  keys.erase(std::ranges::unique(keys).begin(), keys.end());
  return keys;
}

}  // namespace modeldb
