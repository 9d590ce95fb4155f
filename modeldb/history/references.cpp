#include "modeldb/history/references.h"

#include "modeldb/base/failure.h"

namespace modeldb {

ReferenceWatch::ReferenceWatch(Database& database, const std::vector<Reference>& references,
                               const std::set<std::wstring>& changed_tables)
    : database_(database) {
  for (const Reference& reference : references) {
    if (!changed_tables.contains(reference.table) && !changed_tables.contains(reference.to_table)) {
      continue;
    }
    if (database.engine().has_table(reference.table)) references_.push_back(&reference);
  }
  before_ = find();
}

ReferenceWatch::Dangling ReferenceWatch::find() {
  Dangling found;
  for (const Reference* const reference : references_) {
    const auto rows = database_.query(
        L"SELECT DISTINCT " + reference->column + L" FROM " + reference->table + L" AS r WHERE r." +
        reference->column + L" <> 0 AND NOT EXISTS (SELECT 1 FROM " + reference->to_table +
        L" AS t WHERE t." + reference->to_key + L" = r." + reference->column + L")");
    while (rows->step()) found.emplace(reference, rows->integer(0));
  }
  return found;
}

void ReferenceWatch::require_no_others() {
  for (const auto& [reference, key] : find()) {
    if (before_.contains({reference, key})) continue;
    fail(kIntegrityViolation, L"Rows of the table " + reference->table + L" would refer to " +
                                  reference->column + L" " + std::to_wstring(key) +
                                  L", which the table " + reference->to_table +
                                  L" would not have: another program has changed the model since.");
  }
}

}  // namespace modeldb
