#include "modeldb/sqlite/recorder.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "modeldb/sqlite/row_change.h"

namespace modeldb {
namespace {

/// Of a piece, in bytes: far below what a value of a table may have.
constexpr std::size_t kPiece = 1 << 20;

RowValue value_of(sqlite3_value* value) {
  using enum RowValue::Type;
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return {.type = kInteger, .integer = sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
      return {.type = kReal, .real = sqlite3_value_double(value)};
    case SQLITE_TEXT: {
      const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      if (!text) throw std::bad_alloc();
      return {.type = kText, .bytes = {text, static_cast<std::size_t>(sqlite3_value_bytes(value))}};
    }
    case SQLITE_BLOB: {
      const auto* const bytes = static_cast<const char*>(sqlite3_value_blob(value));
      return {.type = kBlob,
              .bytes = {bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))}};
    }
    default:
      return {.type = kNull};
  }
}

bool same(const RowValue& a, const RowValue& b) {
  return a.type == b.type && a.integer == b.integer &&
         std::memcmp(&a.real, &b.real, sizeof a.real) == 0 && a.bytes == b.bytes;
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
  size_ = 0;
  pieces_.clear();
  tables_.clear();
  parts_.clear();
  if (body_.capacity() > kPiece) std::string().swap(body_);
  if (change_.capacity() > kPiece) std::string().swap(change_);
}

void Recorder::undo_part() noexcept {
  restart_part();
  parts_.pop_back();
}

void Recorder::truncate(std::size_t position) noexcept {
  if (position > size_) return;
  size_ = position;
  gap_ = Gap::kNone;
  pieces_.resize((size_ + kPiece - 1) / kPiece);
  if (!pieces_.empty()) pieces_.back().resize(size_ - (pieces_.size() - 1) * kPiece);
}

void Recorder::on_change(void* self, sqlite3* handle, int operation, const char* database,
                         const char* table, std::int64_t old_key, std::int64_t new_key) {
  auto& recorder = *static_cast<Recorder*>(self);
  if (!recorder.is_on_ || recorder.gap_ != Gap::kNone) return;
  if (std::strcmp(database, "main") != 0 || is_own(table)) return;
  const std::size_t before = recorder.size_;
  try {
    recorder.keep(handle, operation, table, old_key, new_key);
  } catch (const Unreadable&) {
    // Nothing may be thrown through SQLite.
    recorder.gap_ = Gap::kUnreadable;
  } catch (...) {
    recorder.truncate(before);
    recorder.gap_ = Gap::kNoMemory;
  }
}

void Recorder::keep(sqlite3* handle, int operation, const char* table, std::int64_t old_key,
                    std::int64_t new_key) {
  const int columns = sqlite3_preupdate_count(handle);
  body_.clear();
  if (operation != SQLITE_INSERT) append_old(handle, columns, old_key);
  if (operation != SQLITE_DELETE) {
    const bool differs = append_new(handle, columns, new_key, operation == SQLITE_UPDATE);
    if (!differs && old_key == new_key) return;
  }
  change_.clear();
  append_change(change_, {kind_of(operation), number_of(table), body_});
  if (size_ + change_.size() > limit_) {
    gap_ = Gap::kBeyondLimit;
    return;
  }
  append(change_);
}

void Recorder::append_old(sqlite3* handle, int columns, std::int64_t key) {
  append_integer(body_, key);
  append_count(body_, static_cast<std::uint64_t>(columns));
  for (int column = 0; column < columns; ++column) append_value(body_, old_value(handle, column));
}

bool Recorder::append_new(sqlite3* handle, int columns, std::int64_t key, bool is_update) {
  append_integer(body_, key);
  append_count(body_, static_cast<std::uint64_t>(columns));
  bool differs = !is_update;
  for (int column = 0; column < columns; ++column) {
    const RowValue value = new_value(handle, column);
    const bool is_same = is_update && same(value, old_value(handle, column));
    append_value(body_, is_same ? RowValue{.type = RowValue::Type::kSame} : value);
    differs = differs || !is_same;
  }
  return differs;
}

std::size_t Recorder::number_of(std::string_view table) {
  const auto found = std::ranges::find(tables_, table);
  if (found == tables_.end()) {
    tables_.emplace_back(table);
    return tables_.size() - 1;
  }
  return static_cast<std::size_t>(found - tables_.begin());
}

void Recorder::append(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t used = size_ % kPiece;
    if (used == 0) pieces_.emplace_back();
    const auto part = bytes.substr(0, kPiece - used);
    pieces_.back() += part;
    size_ += part.size();
    bytes.remove_prefix(part.size());
  }
}

}  // namespace modeldb
