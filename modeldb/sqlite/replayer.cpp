#include "modeldb/sqlite/replayer.h"

#include <ranges>
#include <vector>

#include "modeldb/base/failure.h"

namespace modeldb {

Replayer::Replayer(SqliteFile& file) : file_(file) {
  file.enforce_foreign_keys(false);
  file.authorizer().set_replaying(true);
}

Replayer::~Replayer() {
  file_.authorizer().set_replaying(false);
  file_.enforce_foreign_keys(true);
}

void Replayer::replay(std::string_view stream, std::span<const RecordedTable> tables, bool undo) {
  std::vector<RowChange> changes;
  RowChanges reader(stream);
  for (RowChange change{}; reader.next(change);) {
    if (undo) {
      changes.push_back(change);
    } else {
      apply(change, tables, undo);
    }
  }
  for (const RowChange& change : changes | std::views::reverse) apply(change, tables, undo);
}

void Replayer::apply(const RowChange& change, std::span<const RecordedTable> tables, bool undo) {
  if (change.table >= tables.size()) {
    fail(kCannotReadFile, L"The history names a table that it does not know; it is damaged.");
  }
  ReplayedTable& rows = table(tables[static_cast<std::size_t>(change.table)]);
  rows_.read(change);
  const auto& [old_key, new_key, old_values, new_values] = rows_;
  switch (change.kind) {
    case RowChange::Kind::kInserted:
      return undo ? rows.remove(new_key, new_values) : rows.insert(new_key, new_values);
    case RowChange::Kind::kDeleted:
      return undo ? rows.insert(old_key, old_values) : rows.remove(old_key, old_values);
    case RowChange::Kind::kUpdated:
      return undo ? rows.update(new_key, new_values, old_key, old_values)
                  : rows.update(old_key, old_values, new_key, new_values);
  }
}

ReplayedTable& Replayer::table(const RecordedTable& recorded) {
  const auto known = tables_.find(recorded.name);
  if (known != tables_.end()) return known->second;
  TableLayout layout = TableLayout::read(file_, recorded.name);
  if (layout.column_list() != recorded.columns) {
    fail(kIntegrityViolation, L"The table " + recorded.name +
                                  L" has other columns than it had: another program has given it "
                                  L"another shape since.");
  }
  return tables_.try_emplace(recorded.name, file_, recorded.name, std::move(layout)).first->second;
}

}  // namespace modeldb
