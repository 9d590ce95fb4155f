#include "modeldb/sqlite/recorder.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "modeldb/sqlite/row_change.h"

namespace modeldb {
namespace {

/// Bytes of a piece that is full. The heap gives blocks of this size again; larger ones come from
/// the system each time, which has to clear them.
constexpr std::size_t kPiece = 1 << 18;
/// Room for the last change of a piece; one that is larger makes it grow.
constexpr std::size_t kLastChange = 1 << 12;

RowValue value_with(RowValue::Type type, const void* data, sqlite3_value* value) {
  const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
  if (!data && size != 0) throw std::bad_alloc();
  return {.type = type, .bytes = {static_cast<const char*>(data), size}};
}

RowValue text_of(sqlite3_value* value) {
  // As it stands in the row, if possible: SQLite would make a copy to put a NUL behind it.
  const bool is_utf8 = sqlite3_value_encoding(value) == SQLITE_UTF8;
  const void* const text = is_utf8 ? sqlite3_value_blob(value) : sqlite3_value_text(value);
  if (!text && !is_utf8) throw std::bad_alloc();
  return value_with(RowValue::Type::kText, text, value);
}

RowValue value_of(sqlite3_value* value) {
  using enum RowValue::Type;
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return {.type = kInteger, .integer = sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
      return {.type = kReal, .real = sqlite3_value_double(value)};
    case SQLITE_TEXT:
      return text_of(value);
    case SQLITE_BLOB:
      return value_with(kBlob, sqlite3_value_blob(value), value);
    default:
      return {.type = kNull};
  }
}

bool is_key(const RowValue& value, std::int64_t key) {
  return value.type == RowValue::Type::kInteger && value.integer == key;
}

constexpr RowValue kAsBefore{.type = RowValue::Type::kSame};
constexpr RowValue kKeyItself{.type = RowValue::Type::kKey};

/// The difference of two keys; may wrap round.
std::int64_t between(std::int64_t from, std::int64_t to) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(to) -
                                   static_cast<std::uint64_t>(from));
}

/// Values that the last row has too are not repeated; returns whether it has them all. `remembers`:
/// this row becomes the last one.
template <class ValueAt>
bool write_row(RowWriter& out, std::int64_t key, int columns, ValueAt&& value_at, LastRow& last,
               bool remembers) {
  out.integer(between(last.key(), key));
  out.count(static_cast<std::uint64_t>(columns));
  bool is_last = key == last.key();
  for (int i = 0; i < columns; ++i) {
    const auto column = static_cast<std::size_t>(i);
    const RowValue value = value_at(i);
    if (last.has(column, value)) {
      out.value(kAsBefore);
      continue;
    }
    is_last = false;
    out.value(is_key(value, key) ? kKeyItself : value);
    if (remembers) last.set(column, value);
  }
  if (remembers) last.set_key(key);
  return is_last;
}

/// A column of the row that changes cannot be read, such as one that is computed.
struct Unreadable {};

RowValue checked(int result, sqlite3_value* value) {
  if (result == SQLITE_NOMEM) throw std::bad_alloc();
  if (result != SQLITE_OK || !value) throw Unreadable();
  return value_of(value);
}

RowValue old_value(sqlite3* handle, int column) {
  sqlite3_value* value = nullptr;
  const int result = sqlite3_preupdate_old(handle, column, &value);
  return checked(result, value);
}

RowValue new_value(sqlite3* handle, int column) {
  sqlite3_value* value = nullptr;
  const int result = sqlite3_preupdate_new(handle, column, &value);
  return checked(result, value);
}

bool is_own(const char* table) { return sqlite3_strnicmp(table, "orv_", 4) == 0; }

RowChange::Kind kind_of(int operation) {
  if (operation == SQLITE_INSERT) return RowChange::Kind::kInserted;
  return operation == SQLITE_UPDATE ? RowChange::Kind::kUpdated : RowChange::Kind::kDeleted;
}

}  // namespace

void Recorder::install(sqlite3* handle) {
  sqlite3_preupdate_hook(
      handle,
      [](void* self, sqlite3* of, int operation, const char* database, const char* table,
         sqlite3_int64 old_key, sqlite3_int64 new_key) {
        on_change(self, of, operation, database, table, old_key, new_key);
      },
      this);
}

void Recorder::begin(std::size_t limit) {
  end();
  limit_ = limit;
  is_on_ = true;
}

void Recorder::end() noexcept {
  is_on_ = false;
  gap_ = Gap::kNone;
  pieces_.clear();
  forgets_ = false;
  tables_.clear();
  parts_.clear();
}

void Recorder::undo_part() noexcept {
  restart_part();
  parts_.pop_back();
}

void Recorder::truncate(std::size_t position) noexcept {
  if (position > size()) return;
  gap_ = Gap::kNone;
  while (size() > position) {
    auto& [begin, bytes] = pieces_.back();
    const std::size_t kept = position > begin ? position - begin : 0;
    RowChanges undone(std::string_view(bytes).substr(kept));
    for (RowChange change{}; undone.next(change);) --count(change);
    bytes.resize(kept);
    if (kept == 0) pieces_.pop_back();
  }
  forget_rows();
}

void Recorder::on_change(void* self, sqlite3* handle, int operation, const char* database,
                         const char* table, std::int64_t old_key, std::int64_t new_key) {
  auto& recorder = *static_cast<Recorder*>(self);
  if (!recorder.is_on_ || recorder.gap_ != Gap::kNone) return;
  if (std::strcmp(database, "main") != 0 || is_own(table)) return;
  try {
    recorder.keep(handle, operation, table, old_key, new_key);
  } catch (const Unreadable&) {
    // Nothing may be thrown through SQLite.
    recorder.gap_ = Gap::kUnreadable;
  } catch (...) {
    recorder.gap_ = Gap::kNoMemory;
  }
}

std::string& Recorder::room() {
  if (pieces_.empty()) {
    pieces_.push_back({.begin = 0, .bytes = {}});
  } else if (pieces_.back().bytes.size() >= kPiece) {
    pieces_.push_back({.begin = size(), .bytes = {}});
    pieces_.back().bytes.reserve(kPiece + kLastChange);
    forget_rows();
  }
  return pieces_.back().bytes;
}

void Recorder::keep(sqlite3* handle, int operation, const char* table, std::int64_t old_key,
                    std::int64_t new_key) {
  std::string& piece = room();
  const std::size_t before = piece.size();
  const auto number = number_of(table);
  const RowChange change{
      .kind = kind_of(operation), .table = number, .rows = {}, .forgets = forgets_};
  bool is_kept = false;
  try {
    RowWriter out(piece);
    write_head(out, change);
    is_kept = write_rows(out, handle, change.kind, old_key, new_key, tables_[number].last_row);
    out.flush();
  } catch (...) {
    piece.resize(before);
    forget_rows();
    throw;
  }
  if (size() > limit_) gap_ = Gap::kBeyondLimit;
  if (is_kept && gap_ == Gap::kNone) {
    forgets_ = false;
    ++count(change);
  } else {
    piece.resize(before);
    forget_rows();
  }
}

bool Recorder::write_rows(RowWriter& out, sqlite3* handle, RowChange::Kind kind,
                          std::int64_t old_key, std::int64_t new_key, LastRow& last) {
  const int columns = sqlite3_preupdate_count(handle);
  const auto old_row = [&](int column) { return old_value(handle, column); };
  const auto new_row = [&](int column) { return new_value(handle, column); };
  switch (kind) {
    case RowChange::Kind::kInserted:
      write_row(out, new_key, columns, new_row, last, true);
      return true;
    case RowChange::Kind::kUpdated:
      write_row(out, old_key, columns, old_row, last, true);
      return !write_row(out, new_key, columns, new_row, last, false);
    case RowChange::Kind::kDeleted:
      write_row(out, old_key, columns, old_row, last, true);
  }
  return true;
}

/// The next change is written as if it were the first.
void Recorder::forget_rows() noexcept {
  for (Table& table : tables_) table.last_row.forget();
  forgets_ = true;
}

std::size_t Recorder::number_of(std::string_view table) {
  const auto found = std::ranges::find(tables_, table, &Table::name);
  if (found == tables_.end()) {
    tables_.push_back({.name = std::string(table)});
    return tables_.size() - 1;
  }
  return static_cast<std::size_t>(found - tables_.begin());
}

std::int64_t& Recorder::count(const RowChange& change) {
  Table& table = tables_[static_cast<std::size_t>(change.table)];
  switch (change.kind) {
    case RowChange::Kind::kInserted:
      return table.inserted;
    case RowChange::Kind::kUpdated:
      return table.updated;
    default:
      return table.deleted;
  }
}

}  // namespace modeldb
