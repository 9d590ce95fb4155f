#include "modeldb/sqlite/replayer.h"

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
  undo ? take_back(stream, tables) : repeat(stream, tables);
}

void Replayer::repeat(std::string_view stream, std::span<const RecordedTable> tables) {
  RowChanges changes(stream);
  RowReader reader;
  RowPair rows;
  for (RowChange change{}; changes.next(change);) {
    reader.read(change, rows);
    apply(change, rows, tables, false);
  }
}

/// Rows are read forwards only: from one change that forgets to the next, and these sections
/// backwards.
void Replayer::take_back(std::string_view stream, std::span<const RecordedTable> tables) {
  std::vector<RowChange> changes;
  RowChanges all(stream);
  for (RowChange change{}; all.next(change);) changes.push_back(change);
  std::vector<RowPair> rows;
  for (auto end = changes.end(); end != changes.begin();) {
    auto begin = end - 1;
    while (begin != changes.begin() && !begin->forgets) --begin;
    RowReader reader;
    rows.resize(static_cast<std::size_t>(end - begin));
    for (auto change = begin; change != end; ++change) {
      reader.read(*change, rows[static_cast<std::size_t>(change - begin)]);
    }
    for (auto left = rows.size(); left > 0; --left) {
      apply(begin[left - 1], rows[left - 1], tables, true);
    }
    end = begin;
  }
}

void Replayer::apply(const RowChange& change, const RowPair& rows,
                     std::span<const RecordedTable> tables, bool undo) {
  if (change.table >= tables.size()) {
    fail(kCannotReadFile, L"The history names a table that it does not know; it is damaged.");
  }
  ReplayedTable& table_rows = table(tables[static_cast<std::size_t>(change.table)]);
  const auto& [before, after] = rows;
  switch (change.kind) {
    case RowChange::Kind::kInserted:
      return undo ? table_rows.remove(after.key, after.values)
                  : table_rows.insert(after.key, after.values);
    case RowChange::Kind::kDeleted:
      return undo ? table_rows.insert(before.key, before.values)
                  : table_rows.remove(before.key, before.values);
    case RowChange::Kind::kUpdated:
      return undo ? table_rows.update(after.key, after.values, before.key, before.values)
                  : table_rows.update(before.key, before.values, after.key, after.values);
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
