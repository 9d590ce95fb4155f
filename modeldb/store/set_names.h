#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "modeldb/schema/table.h"

namespace modeldb {

/// The sets of one table that the model has, read once, to be found by name and by number.
class SetNames {
 public:
  SetNames(Database& database, const Kind& sets);

  /// The number of the set of that name, exactly as it is written or else without blanks around it.
  /// Throws CellFault when there is none, or more than one.
  [[nodiscard]] long find(std::wstring_view name) const;
  /// Throws CellFault when the model has no set of that number.
  void require(long id) const;

 private:
  static constexpr long kSeveral = -1;

  const Kind& kind_;
  std::unordered_map<std::wstring, long> by_name_;
  std::unordered_set<long> ids_;
};

}  // namespace modeldb
