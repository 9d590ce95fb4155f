#include "modeldb/history/history_tables.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace modeldb {
namespace {

/// Of the rows of a step, in bytes: far below what a value of a table may have.
constexpr std::size_t kPart = 1 << 20;

}  // namespace

HistoryBounds HistoryBounds::sound() const {
  HistoryBounds result;
  const HistoryBounds with_steps{.steps = steps};
  const HistoryBounds with_bytes{.bytes = bytes};
  if (with_steps.are_sound()) result.steps = steps;
  if (with_bytes.are_sound()) result.bytes = bytes;
  return result;
}

bool HistoryTables::exist() {
  if (are_seen_) return true;
  const bool exist = database_.engine().has_table(L"orv_steps");
  // What this transaction has made may be undone with it.
  are_seen_ = exist && !database_.transactions().is_open();
  return exist;
}

void HistoryTables::make() {
  if (exist()) return;
  database_.engine().recorder()->make_tables();
  const HistoryBounds bounds;
  database_.execute(L"INSERT INTO orv_history (MaximumSteps, MaximumBytes, Note) VALUES (?, ?, '')",
                    bounds.steps, bounds.bytes);
}

HistoryBounds HistoryTables::bounds() {
  if (!exist()) return {};
  const auto row = database_.query(L"SELECT MaximumSteps, MaximumBytes FROM orv_history");
  if (!row->step()) return {};
  constexpr long kUnsound = -1;
  const auto bound = [&](int column) {
    if (row->type(column) != Statement::Type::kInteger) return kUnsound;
    const std::int64_t value = row->integer(column);
    return std::in_range<long>(value) ? static_cast<long>(value) : kUnsound;
  };
  return {.steps = bound(0), .bytes = bound(1)};
}

void HistoryTables::set_bounds(const HistoryBounds& bounds) {
  database_.execute(L"UPDATE orv_history SET MaximumSteps = ?, MaximumBytes = ?", bounds.steps,
                    bounds.bytes);
}

std::wstring HistoryTables::note() {
  if (!exist()) return {};
  const auto row = database_.query(L"SELECT Note FROM orv_history");
  return row->step() ? std::wstring(row->text(0)) : std::wstring();
}

void HistoryTables::set_note(std::wstring_view note) {
  database_.execute(L"UPDATE orv_history SET Note = ?", note);
}

std::vector<Step> HistoryTables::read(std::wstring_view condition, long first, long last) {
  std::vector<Step> steps;
  if (!exist()) return steps;
  const auto rows =
      database_.query(L"SELECT StepID, Name, MadeAt, IsUndone, IsOvertaken FROM orv_steps WHERE " +
                          std::wstring(condition) + L" ORDER BY StepID",
                      first, last);
  while (rows->step()) {
    steps.push_back({.number = static_cast<long>(rows->integer(0)),
                     .name = std::wstring(rows->text(1)),
                     .made_at = std::wstring(rows->text(2)),
                     .is_undone = rows->integer(3) != 0,
                     .is_overtaken = rows->integer(4) != 0,
                     .tables = {}});
  }
  for (Step& step : steps) step.tables = tables_of(step.number);
  return steps;
}

std::vector<Step> HistoryTables::steps() { return between(0, std::numeric_limits<long>::max()); }

std::vector<Step> HistoryTables::between(long first, long last) {
  return read(L"StepID >= ? AND StepID <= ?", first, last);
}

std::optional<Step> HistoryTables::find(long number) {
  auto found = between(number, number);
  if (found.empty()) return std::nullopt;
  return std::move(found.front());
}

std::vector<RecordedTable> HistoryTables::tables_of(long number) {
  std::vector<RecordedTable> tables;
  const auto rows = database_.query(
      L"SELECT TableName, Columns, Inserted, Updated, Deleted FROM orv_step_tables WHERE StepID = "
      L"? ORDER BY Number",
      number);
  while (rows->step()) {
    tables.push_back({.name = std::wstring(rows->text(0)),
                      .columns = std::wstring(rows->text(1)),
                      .inserted = rows->integer(2),
                      .updated = rows->integer(3),
                      .deleted = rows->integer(4)});
  }
  return tables;
}

std::optional<long> HistoryTables::number_of(std::wstring_view sql) {
  if (!exist()) return std::nullopt;
  const auto row = database_.query(sql);
  if (!row->step()) return std::nullopt;
  return static_cast<long>(row->integer(0));
}

void HistoryTables::require_sound() {
  const auto unsound = number_of(
      L"SELECT StepID FROM orv_steps WHERE IsUndone IS NULL OR IsUndone NOT IN (0, 1) OR "
      L"IsOvertaken IS NULL OR IsOvertaken NOT IN (0, 1)");
  if (unsound) fail_as_damaged_history();
}

std::optional<long> HistoryTables::last_done() {
  return number_of(L"SELECT StepID FROM orv_steps WHERE IsUndone = 0 ORDER BY StepID DESC LIMIT 1");
}

std::optional<long> HistoryTables::first_undone() {
  return number_of(L"SELECT StepID FROM orv_steps WHERE IsUndone = 1 ORDER BY StepID LIMIT 1");
}

long HistoryTables::next_number() {
  return exist() ? database_.engine().recorder()->next_step() : 1;
}

std::string HistoryTables::bytes_of(long number) {
  const auto size =
      number_of(L"SELECT Bytes FROM orv_steps WHERE StepID = " + std::to_wstring(number));
  std::string bytes;
  const auto rows =
      database_.query(L"SELECT Changes FROM orv_step_rows WHERE StepID = ? ORDER BY Part", number);
  while (rows->step()) {
    const auto piece = rows->blob(0);
    bytes.append(reinterpret_cast<const char*>(piece.data()), piece.size());
  }
  // Without one of its parts a step could be read, and half of it be undone.
  if (!size || bytes.size() != static_cast<std::size_t>(*size)) fail_as_damaged_history();
  return bytes;
}

void HistoryTables::add(const Step& step, const Recording& recording) {
  const auto size = static_cast<std::int64_t>(recording.size);
  database_.execute(
      L"INSERT INTO orv_steps (Name, MadeAt, IsUndone, IsOvertaken, Bytes, Ordinal, BytesUpTo) "
      L"SELECT ?, ?, 0, 0, ?, coalesce(max(Ordinal), 0) + 1, coalesce(max(BytesUpTo), 0) + ? FROM "
      L"(SELECT Ordinal, BytesUpTo FROM orv_steps ORDER BY StepID DESC LIMIT 1)",
      std::wstring_view(step.name), std::wstring_view(step.made_at), size, size);
  const auto number = database_.engine().last_insert_id();
  int place = 0;
  for (const RecordedTable& table : step.tables) {
    database_.execute(
        L"INSERT INTO orv_step_tables (StepID, Number, TableName, Columns, Inserted, Updated, "
        L"Deleted) VALUES (?, ?, ?, ?, ?, ?, ?)",
        number, place++, std::wstring_view(table.name), std::wstring_view(table.columns),
        table.inserted, table.updated, table.deleted);
  }
  int part = 0;
  for (std::string_view rest : recording.pieces) {
    for (; !rest.empty(); rest.remove_prefix(std::min(kPart, rest.size()))) {
      database_.execute(L"INSERT INTO orv_step_rows (StepID, Part, Changes) VALUES (?, ?, ?)",
                        number, part++, std::as_bytes(std::span(rest.substr(0, kPart))));
    }
  }
}

void HistoryTables::set_undone(long number, bool is_undone) {
  database_.execute(L"UPDATE orv_steps SET IsUndone = ? WHERE StepID = ?", is_undone ? 1 : 0,
                    number);
}

void HistoryTables::drop_undone() {
  const auto first = first_undone();
  if (!first) return;
  for (const auto* const table : {L"orv_step_rows", L"orv_step_tables", L"orv_steps"}) {
    database_.execute(L"DELETE FROM " + std::wstring(table) + L" WHERE StepID >= ?", *first);
  }
}

void HistoryTables::drop_beyond(const HistoryBounds& bounds) {
  const auto newest =
      database_.query(L"SELECT Ordinal, BytesUpTo FROM orv_steps ORDER BY StepID DESC LIMIT 1");
  if (!newest->step()) return;
  const auto last_to_go =
      database_.query(L"SELECT StepID, Ordinal, BytesUpTo - Bytes FROM orv_steps ORDER BY StepID");
  std::optional<long> gone;
  while (last_to_go->step()) {
    const bool has_room = newest->integer(0) - last_to_go->integer(1) < bounds.steps &&
                          newest->integer(1) - last_to_go->integer(2) <= bounds.bytes;
    if (has_room) break;
    gone = static_cast<long>(last_to_go->integer(0));
  }
  last_to_go->reset();
  if (gone) drop_through(*gone);
}

void HistoryTables::drop_through(long number) {
  for (const auto* const table : {L"orv_step_rows", L"orv_step_tables", L"orv_steps"}) {
    database_.execute(L"DELETE FROM " + std::wstring(table) + L" WHERE StepID <= ?", number);
  }
}

void HistoryTables::drop_all() { drop_through(std::numeric_limits<long>::max()); }

std::optional<std::int64_t> HistoryTables::known_counter() {
  if (!exist()) return std::nullopt;
  const auto row =
      database_.query(L"SELECT ChangeCounter FROM orv_steps ORDER BY StepID DESC LIMIT 1");
  if (!row->step()) return std::nullopt;
  return row->integer(0);
}

void HistoryTables::set_known_counter(std::int64_t counter) {
  database_.execute(
      L"UPDATE orv_steps SET ChangeCounter = ? WHERE StepID = (SELECT max(StepID) FROM orv_steps)",
      counter);
}

void HistoryTables::set_overtaken() {
  database_.execute(L"UPDATE orv_steps SET IsOvertaken = 1 WHERE IsOvertaken = 0");
}

}  // namespace modeldb
