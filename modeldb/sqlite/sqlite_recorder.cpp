#include "modeldb/sqlite/sqlite_recorder.h"

#include <algorithm>

#include "modeldb/sqlite/replayer.h"
#include "modeldb/sqlite/utf8.h"

namespace modeldb {
namespace {

/// SQLite does not tell an old row that has NULL in a column from one that was written before the
/// column was added, and reads as its default.
bool hides_default(const KeptRow& before, const TableLayout& layout) {
  for (std::size_t i = 0; i < before.values.size() && i < layout.has_default.size(); ++i) {
    if (layout.has_default[i] && before.values[i].type == RowValue::Type::kNull) return true;
  }
  return false;
}

std::wstring words_of(Recorder::Gap gap) {
  switch (gap) {
    case Recorder::Gap::kNoMemory:
      return L"there was not enough memory to keep its rows";
    case Recorder::Gap::kUnreadable:
      return L"it has rows of a table with a computed column";
    default:
      return {};
  }
}

}  // namespace

void SqliteRecorder::make_tables() {
  constexpr const wchar_t* kTables[] = {
      L"CREATE TABLE orv_history (MaximumSteps INTEGER, MaximumBytes INTEGER, Note TEXT)",
      L"CREATE TABLE orv_steps (StepID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, MadeAt TEXT, "
      L"IsUndone INTEGER, IsOvertaken INTEGER, Bytes INTEGER, Ordinal INTEGER, BytesUpTo INTEGER, "
      L"ChangeCounter INTEGER)",
      L"CREATE TABLE orv_step_tables (StepID INTEGER, Number INTEGER, TableName TEXT, Columns "
      L"TEXT, Inserted INTEGER, Updated INTEGER, Deleted INTEGER, PRIMARY KEY (StepID, Number)) "
      L"WITHOUT ROWID",
      L"CREATE TABLE orv_step_rows (StepID INTEGER, Part INTEGER, Changes BLOB, PRIMARY KEY "
      L"(StepID, Part)) WITHOUT ROWID",
  };
  for (const auto* const sql : kTables) SqliteStatement(file_, sql, Trust::kHost).run();
}

long SqliteRecorder::next_step() {
  SqliteStatement last(file_, L"SELECT seq FROM sqlite_sequence WHERE name = 'orv_steps'",
                       Trust::kHost);
  return last.step() ? static_cast<long>(last.integer(0)) + 1 : 1;
}

Recording SqliteRecorder::recording() {
  const Recorder& recorder = file_.recorder();
  Recording result{.size = recorder.size(),
                   .is_incomplete = recorder.gap() == Recorder::Gap::kBeyondLimit,
                   .fault = words_of(recorder.gap())};
  if (recorder.gap() != Recorder::Gap::kNone) return result;
  for (const Recorder::Piece& piece : recorder.pieces()) result.pieces.emplace_back(piece.bytes);
  std::vector<TableLayout> layouts;
  bool may_hide_default = false;
  for (const auto& [name, inserted, updated, deleted, last] : recorder.tables()) {
    const TableLayout& layout = layouts.emplace_back(TableLayout::read(file_, from_utf8(name)));
    result.tables.push_back({.name = from_utf8(name),
                             .columns = layout.column_list(),
                             .inserted = inserted,
                             .updated = updated,
                             .deleted = deleted});
    const bool has_old_rows = updated + deleted > 0;
    may_hide_default = may_hide_default || (has_old_rows && layout.any_has_default());
    if (result.fault.empty() && !layout.fault.empty() && (inserted > 0 || has_old_rows)) {
      result.fault =
          L"the table " + result.tables.back().name + L" cannot be put back: " + layout.fault;
    }
  }
  if (!may_hide_default) return result;
  RowReader reader;
  RowPair rows;
  for (const std::string_view piece : result.pieces) {
    RowChanges changes(piece);
    for (RowChange change{}; result.fault.empty() && changes.next(change);) {
      reader.read(change, rows);
      const auto number = static_cast<std::size_t>(change.table);
      if (!hides_default(rows.before, layouts[number])) continue;
      result.fault = L"the table " + result.tables[number].name +
                     L" has a column with a default, in which a row had no value";
    }
  }
  return result;
}

void SqliteRecorder::replay(std::string_view bytes, std::span<const RecordedTable> tables,
                            bool undo) {
  Replayer(file_).replay(bytes, tables, undo);
}

}  // namespace modeldb
