#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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
  [[nodiscard]] std::size_t position() const { return size_ + (gap_ == Gap::kNone ? 0 : 1); }
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

  /// The changes as a stream (RowChanges) in pieces, each small enough for a row of a table.
  [[nodiscard]] const std::vector<std::string>& pieces() const { return pieces_; }
  [[nodiscard]] std::size_t size() const { return size_; }
  /// The tables by their numbers in the stream; some may have no change in it.
  [[nodiscard]] const std::vector<std::string>& tables() const { return tables_; }

 private:
  static void on_change(void* self, sqlite3* handle, int operation, const char* database,
                        const char* table, std::int64_t old_key, std::int64_t new_key);
  void keep(sqlite3* handle, int operation, const char* table, std::int64_t old_key,
            std::int64_t new_key);
  void append_old(sqlite3* handle, int columns, std::int64_t key);
  /// `is_update`: values that are as in the old row are not repeated; false when all are.
  bool append_new(sqlite3* handle, int columns, std::int64_t key, bool is_update);
  std::size_t number_of(std::string_view table);
  void append(std::string_view bytes);

  bool is_on_ = false;
  Gap gap_ = Gap::kNone;
  std::size_t limit_ = 0;
  std::size_t size_ = 0;
  std::vector<std::string> pieces_;
  std::vector<std::string> tables_;
  std::vector<std::size_t> parts_;  // where they begin
  // Kept for their capacity:
  std::string body_;
  std::string change_;
};

}  // namespace modeldb
