#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace modeldb {

/// A table in a recording, by its place there, and how many of its rows changed.
struct RecordedTable {
  std::wstring name;
  std::wstring columns;  ///< those that it had
  std::int64_t inserted = 0;
  std::int64_t updated = 0;
  std::int64_t deleted = 0;
};

/// What changed in a transaction, for as long as nothing more changes.
struct Recording {
  std::vector<RecordedTable> tables = {};
  /// The rows before and after, as only the engine reads them: a sequence of bytes.
  std::vector<std::string_view> pieces = {};
  std::size_t size = 0;  ///< of all pieces
  /// There was more than the limit has room for.
  bool is_incomplete = false;
  /// Why else it cannot be taken back; empty when it can.
  std::wstring fault = {};
};

/// An engine's part in what can be undone: it records the rows that change in a transaction,
/// whatever changes them, and puts them back. Tables of the model database's own (orv_...) are left
/// out, and so is what a savepoint or a failed statement undid.
class RowRecorder {
 public:
  RowRecorder() = default;
  RowRecorder(const RowRecorder&) = delete;
  RowRecorder& operator=(const RowRecorder&) = delete;
  virtual ~RowRecorder() = default;

  /// Makes the tables in which histories are kept (history/history_tables.h).
  virtual void make_tables() = 0;

  /// The key that the next row of orv_steps gets; these tables are there.
  [[nodiscard]] virtual long next_step() = 0;

  /// Records from here to the end of the transaction, which has just begun, up to so many bytes.
  virtual void begin(std::size_t limit) = 0;
  /// What it has recorded so far.
  [[nodiscard]] virtual Recording recording() = 0;

  /// Undoes what a recording has, the last row first, or repeats it; nothing else changes then, be
  /// it by triggers or by rules between tables. Stops at the first row that is not as the recording
  /// left it, with a sentence (kIntegrityViolation): it is to be rolled back then.
  virtual void replay(std::string_view bytes, std::span<const RecordedTable> tables, bool undo) = 0;

  /// A number that each transaction that changes the database raises by one, whoever's it is, as it
  /// was before the one that is open; 0 when the database does not tell.
  [[nodiscard]] virtual std::int64_t change_counter() const = 0;
};

}  // namespace modeldb
