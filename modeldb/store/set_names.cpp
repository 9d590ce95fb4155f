#include "modeldb/store/set_names.h"

#include "modeldb/base/failure.h"
#include "modeldb/store/cell_value.h"

namespace modeldb {

SetNames::SetNames(Database& database, const Kind& sets) : kind_(sets) {
  const auto rows = database.query(L"SELECT " + sets.key + L", Description FROM " + sets.table);
  while (rows->step()) {
    const auto id = static_cast<long>(rows->integer(0));
    ids_.insert(id);
    const auto [known, is_new] = by_name_.emplace(rows->text(1), id);
    if (!is_new) known->second = kSeveral;
  }
}

long SetNames::find(std::wstring_view name) const {
  auto found = by_name_.find(std::wstring(name));
  if (found == by_name_.end()) found = by_name_.find(std::wstring(trimmed(name)));
  if (found == by_name_.end()) {
    throw CellFault{L"names " + quoted(name) + L", but the model has no " + kind_.object +
                    L" of that name. Save one with that Description first, or correct the name."};
  }
  if (found->second == kSeveral) {
    throw CellFault{L"names " + quoted(name) + L", but the model has several " + kind_.table +
                    L" of that name. Give the number in a column " + kind_.key + L" instead."};
  }
  return found->second;
}

void SetNames::require(long id) const {
  if (ids_.contains(id)) return;
  throw CellFault{L"holds " + std::to_wstring(id) + L", but the model has no " + kind_.object +
                  L" of that number. Save the set first, or correct the number."};
}

}  // namespace modeldb
