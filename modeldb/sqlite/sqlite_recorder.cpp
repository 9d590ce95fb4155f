#include "modeldb/sqlite/sqlite_recorder.h"

#include <algorithm>

#include "modeldb/sqlite/replayer.h"
#include "modeldb/sqlite/utf8.h"

namespace modeldb {
namespace {

std::string joined(std::span<const std::string> pieces) {
  std::string bytes;
  for (const std::string& piece : pieces) bytes += piece;
  return bytes;
}

void count(RecordedTable& table, RowChange::Kind kind) {
  switch (kind) {
    case RowChange::Kind::kInserted:
      ++table.inserted;
      break;
    case RowChange::Kind::kUpdated:
      ++table.updated;
      break;
    case RowChange::Kind::kDeleted:
      ++table.deleted;
      break;
  }
}

/// SQLite does not tell an old row that has NULL in a column from one that was written before the
/// column was added, and reads as its default.
bool hides_default(const RowChange& change, const TableLayout& layout) {
  if (change.kind == RowChange::Kind::kInserted) return false;
  if (std::ranges::find(layout.has_default, true) == layout.has_default.end()) return false;
  RowPair rows;
  rows.read(change);
  for (std::size_t i = 0; i < layout.has_default.size(); ++i) {
    if (layout.has_default[i] && rows.old_values[i].type == RowValue::Type::kNull) return true;
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
  Recording result{.pieces = recorder.pieces(),
                   .size = recorder.size(),
                   .is_incomplete = recorder.gap() == Recorder::Gap::kBeyondLimit,
                   .fault = words_of(recorder.gap())};
  if (recorder.gap() != Recorder::Gap::kNone) return result;
  std::vector<TableLayout> layouts;
  for (const std::string& name : recorder.tables()) {
    layouts.push_back(TableLayout::read(file_, from_utf8(name)));
    result.tables.push_back({.name = from_utf8(name), .columns = layouts.back().column_list()});
  }
  const std::string bytes = joined(result.pieces);
  RowChanges changes(bytes);
  for (RowChange change{}; changes.next(change);) {
    const auto number = static_cast<std::size_t>(change.table);
    count(result.tables[number], change.kind);
    const TableLayout& layout = layouts[number];
    if (result.fault.empty() && !layout.fault.empty()) {
      result.fault =
          L"the table " + result.tables[number].name + L" cannot be put back: " + layout.fault;
    }
    if (result.fault.empty() && hides_default(change, layout)) {
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
