#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "modeldb/engine/database.h"
#include "modeldb/history/step.h"

namespace modeldb {

/// How much history is kept.
struct HistoryBounds {
  static constexpr long kMostSteps = 1'000'000;
  /// A step is in memory until it is written.
  static constexpr long kMostBytes = 1 << 30;

  long steps = 10'000;
  long bytes = 64 << 20;

  /// Whether they are within what can be set.
  [[nodiscard]] bool are_sound() const {
    return steps >= 0 && steps <= kMostSteps && bytes >= 1 && bytes <= kMostBytes;
  }

  /// With what is set in a new model in place of those that are not.
  [[nodiscard]] HistoryBounds sound() const;

  [[nodiscard]] bool is_off() const { return steps == 0; }
};

/// The rows in which a model keeps its history: the tables orv_history (one row), orv_steps,
/// orv_step_tables and orv_step_rows, which the engine makes. A model that never changed has none.
///
/// Steps that are undone are the last ones. What a step says of the steps before it, such as its
/// place among them, saves counting them at each commit.
class HistoryTables {
 public:
  explicit HistoryTables(Database& database) : database_(database) {}

  [[nodiscard]] bool exist();
  /// Makes them unless they are there.
  void make();

  /// As they stand there, sound or not.
  [[nodiscard]] HistoryBounds bounds();
  void set_bounds(const HistoryBounds& bounds);
  /// Why there is nothing before the first step; empty when nothing was lost.
  [[nodiscard]] std::wstring note();
  void set_note(std::wstring_view note);

  /// All steps, the oldest first.
  [[nodiscard]] std::vector<Step> steps();
  [[nodiscard]] std::optional<Step> find(long number);
  /// The last step that is not undone, or the first that is.
  [[nodiscard]] std::optional<long> last_done();
  [[nodiscard]] std::optional<long> first_undone();
  /// The steps from one to another, the oldest first.
  [[nodiscard]] std::vector<Step> between(long first, long last);
  /// The number that the next step gets, if nobody else makes one.
  [[nodiscard]] long next_number();
  /// kCannotReadFile: a step is neither undone nor not.
  void require_sound();
  /// What the step has recorded. kCannotReadFile: not all of it is there.
  [[nodiscard]] std::string bytes_of(long number);

  void add(const Step& step, const Recording& recording);
  void set_undone(long number, bool is_undone);
  void drop_undone();
  /// Drops the oldest steps until the others are within the bounds.
  void drop_beyond(const HistoryBounds& bounds);
  void drop_all();

  /// The change counter that the file had after the last change that the history knows of; nothing
  /// without steps.
  [[nodiscard]] std::optional<std::int64_t> known_counter();
  void set_known_counter(std::int64_t counter);
  /// Another program has written since the steps were made.
  void set_overtaken();

 private:
  std::vector<Step> read(std::wstring_view where_and_order, long first, long last);
  std::vector<RecordedTable> tables_of(long number);
  [[nodiscard]] std::optional<long> number_of(std::wstring_view sql);
  void drop_through(long number);

  Database& database_;
  bool are_seen_ = false;
};

}  // namespace modeldb
