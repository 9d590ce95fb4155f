#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "modeldb/engine/database.h"

namespace modeldb {

/// A column by which rows refer to those of another table. 0 refers to none.
struct Reference {
  std::wstring table;
  std::wstring column;
  std::wstring to_table;
  std::wstring to_key;
};

/// Watches over the references that a change of some tables may leave without what they refer to.
class ReferenceWatch {
 public:
  /// Notes those that refer to nothing now.
  ReferenceWatch(Database& database, const std::vector<Reference>& references,
                 const std::set<std::wstring>& changed_tables);

  /// Raises kIntegrityViolation, with a sentence, when there are others now.
  void require_no_others();

 private:
  using Dangling = std::set<std::pair<const Reference*, std::int64_t>>;
  [[nodiscard]] Dangling find();

  Database& database_;
  std::vector<const Reference*> references_;
  Dangling before_;
};

}  // namespace modeldb
