#pragma once

#include <optional>
#include <string>
#include <vector>

#include "modeldb/engine/database.h"
#include "modeldb/engine/transaction_companion.h"
#include "modeldb/history/history_tables.h"
#include "modeldb/history/references.h"
#include "modeldb/history/step.h"

namespace modeldb {

/// What the history has to know of a model: how rows are called, and how they hang together.
struct HistoryTerms {
  std::vector<Noun> nouns;
  std::vector<Reference> references;
};

/// The steps that can be taken back and repeated. Every outermost transaction that changes rows
/// becomes one, written along with it; the engine records the rows. A step that is dropped or could
/// not be recorded ends what lies before it.
///
/// The members that change something fail inside a transaction, and with an engine that records
/// nothing.
class History final : private TransactionCompanion {
 public:
  /// Begins to record. The database outlives it.
  History(Database& database, HistoryTerms terms);

  /// Names the step that is made next, or is being made; without a name it gets one that counts.
  /// kInvalidArgument: the name has what is no character.
  void name_next(std::wstring_view name);
  [[nodiscard]] const std::wstring& next_name() const { return next_name_; }

  /// All steps, the oldest first.
  [[nodiscard]] std::vector<Step> steps() { return tables_.steps(); }
  [[nodiscard]] long next_number() { return tables_.next_number(); }

  /// Takes back the last step that is not undone, or all from `first` on; returns them in the order
  /// in which they were taken back. All or none: a row that another program has changed since
  /// refuses them, with a sentence.
  std::vector<Step> undo(std::optional<long> first);
  /// Repeats the first step that is undone, or all up to `last`; likewise.
  std::vector<Step> redo(std::optional<long> last);

  [[nodiscard]] HistoryBounds bounds() { return tables_.bounds(); }
  /// Drops what is beyond them. No steps at all: nothing is recorded.
  void set_bounds(const HistoryBounds& bounds);
  [[nodiscard]] std::wstring note();
  void clear();

 private:
  // TransactionCompanion
  void on_begin() override;
  void before_commit() override;
  void on_end(bool is_kept) noexcept override;

  void add_step(const Recording& recording);
  void end_before(const Recording& recording);
  void notice_others();

  std::vector<Step> steps_to_undo(std::optional<long> first);
  std::vector<Step> steps_to_redo(std::optional<long> last);
  [[noreturn]] void fail_on_number(long number, const wchar_t* doing);
  void replay(const std::vector<Step>& steps, bool undo);
  void replay(const Step& step, bool undo);
  /// Runs what changes the history itself, as a transaction of its own.
  template <class Work>
  void change(const wchar_t* doing, Work&& work);
  RowRecorder& require_recorder();

  Database& database_;
  const HistoryTerms terms_;
  HistoryTables tables_;
  std::wstring next_name_;
  bool is_own_change_ = false;  // what is under way is no step
  bool is_step_made_ = false;   // by the transaction that is open
  // Of the transaction that is open:
  HistoryBounds bounds_;
  std::int64_t counter_ = 0;  // of the file, before it
};

}  // namespace modeldb
