#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/sqlite/last_row.h"
#include "modeldb/sqlite/row_change.h"

struct sqlite3;
struct sqlite3_value;

namespace modeldb {

/// Keeps, while it is on, every row that changes in a transaction of the file, as it was before and
/// after: whoever changes it, be it a statement, a trigger or a rule of a table. The model
/// database's own tables (orv_...) are left out.
///
/// What was kept since a position is dropped when it is undone: truncate().
class Recorder {
 public:
  /// Stays installed: SQLite compiles statements so that they tell of rows only while it is.
  void install(sqlite3* handle);

  /// Keeps changes from here on, up to so many bytes in memory.
  void begin(std::size_t limit);
  /// Stops, and forgets them.
  void end() noexcept;

  /// Where the changes that follow will stand.
  [[nodiscard]] std::size_t position() const { return size() + (gap_ == Gap::kNone ? 0 : 1); }
  // Parts, one in the other, of which each is kept or undone.
  /// Makes room for one more, so that begin_part cannot fail.
  void reserve_part() { parts_.reserve(parts_.size() + 1); }
  void begin_part() noexcept { parts_.push_back(position()); }
  void keep_part() noexcept { parts_.pop_back(); }
  void restart_part() noexcept { truncate(parts_.back()); }
  void undo_part() noexcept;
  /// Forgets what was kept from that position on.
  void truncate(std::size_t position) noexcept;

  /// Why changes are missing.
  enum class Gap { kNone, kBeyondLimit, kNoMemory, kUnreadable };
  [[nodiscard]] Gap gap() const { return gap_; }

  struct Piece {
    std::size_t begin;  // how many bytes there are before
    std::string bytes;
  };
  /// The changes one after the other (RowChanges), none of them in two pieces.
  [[nodiscard]] const std::vector<Piece>& pieces() const { return pieces_; }
  /// Bytes of all pieces.
  [[nodiscard]] std::size_t size() const {
    return pieces_.empty() ? 0 : pieces_.back().begin + pieces_.back().bytes.size();
  }
  struct Table {
    std::string name;
    // How many of its rows were:
    std::int64_t inserted = 0;
    std::int64_t updated = 0;
    std::int64_t deleted = 0;
    LastRow last_row = {};  // see RowChange
  };
  /// The tables by their numbers in the changes; some may have none.
  [[nodiscard]] const std::vector<Table>& tables() const { return tables_; }

 private:
  static void on_change(void* self, sqlite3* handle, int operation, const char* database,
                        const char* table, std::int64_t old_key, std::int64_t new_key);
  void keep(sqlite3* handle, int operation, const char* table, std::int64_t old_key,
            std::int64_t new_key);
  /// False when the row after an update is as the one before.
  bool write_rows(RowWriter& out, sqlite3* handle, RowChange::Kind kind, std::int64_t old_key,
                  std::int64_t new_key, LastRow& last);
  void forget_rows() noexcept;
  /// Where the next change is to be appended.
  std::string& room();
  std::size_t number_of(std::string_view table);
  std::int64_t& count(const RowChange& change);

  bool is_on_ = false;
  Gap gap_ = Gap::kNone;
  std::size_t limit_ = 0;
  std::vector<Piece> pieces_;
  std::vector<Table> tables_;
  std::vector<std::size_t> parts_;  // where they begin
  bool forgets_ = false;            // the next change
};

}  // namespace modeldb
