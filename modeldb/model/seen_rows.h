#pragma once

#include <unordered_map>

#include "modeldb/base/number_set.h"
#include "modeldb/schema/table.h"

namespace modeldb {

/// The records' rows that this program has read or written and not deleted, where others work on
/// the model at the same time: one of them that is gone was deleted by somebody else.
class SeenRows {
 public:
  /// False when it was known already.
  bool add(const Table& table, long key) { return keys_[&table].insert(key); }
  /// False when it was not known.
  bool forget(const Table& table, long key) {
    const auto keys = keys_.find(&table);
    return keys != keys_.end() && keys->second.erase(key);
  }
  [[nodiscard]] bool has(const Table& table, long key) const {
    const auto keys = keys_.find(&table);
    return keys != keys_.end() && keys->second.contains(key);
  }

 private:
  std::unordered_map<const Table*, NumberSet> keys_;
};

}  // namespace modeldb
