#include "modeldb/store/posting.h"

#include <algorithm>
#include <map>
#include <utility>

namespace modeldb {

void Posting::before_commit() {
  if (log_.written.empty()) return;
  std::map<std::pair<bool, long>, std::vector<long>> by_kind;
  for (const Event& event : log_.written) {
    by_kind[{event.type == Event::Type::kDeleted, event.object_type}].push_back(event.id);
  }
  std::vector<ChangedRecords> changes;
  for (auto& [kind, keys] : by_kind) {
    std::ranges::sort(keys);
    keys.erase(std::ranges::unique(keys).begin(), keys.end());
    changes.push_back({kind.first, kind.second, std::move(keys)});
  }
  board_.post(changes);
}

}  // namespace modeldb
