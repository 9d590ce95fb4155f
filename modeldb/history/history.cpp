#include "modeldb/history/history.h"

#include <windows.h>

#include <algorithm>
#include <ranges>
#include <set>
#include <utility>

#include "com/sentence.h"
#include "modeldb/base/characters.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/savepoint.h"

namespace modeldb {
namespace {

std::wstring now() {
  SYSTEMTIME time;
  GetSystemTime(&time);
  wchar_t text[32];
  swprintf(text, std::size(text), L"%04u-%02u-%02uT%02u:%02u:%02uZ", time.wYear, time.wMonth,
           time.wDay, time.wHour, time.wMinute, time.wSecond);
  return text;
}

/// "Step 12 "3 forces saved""
std::wstring shown(const Step& step) {
  return L"Step " + std::to_wstring(step.number) + L" " + quoted(step.name);
}

class Flag {
 public:
  explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;
  ~Flag() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace

History::History(Database& database, HistoryTerms terms)
    : database_(database), terms_(std::move(terms)), tables_(database) {
  if (database.engine().recorder()) database.transactions().accompany(*this);
}

void History::name_next(std::wstring_view name) {
  if (!is_of_characters(name)) fail_on_characters(name);
  next_name_ = name;
}

RowRecorder& History::require_recorder() {
  database_.require_open();
  if (RowRecorder* const recorder = database_.engine().recorder()) return *recorder;
  fail(kFeatureNotAvailable, note());
}

std::wstring History::note() {
  if (database_.engine().recorder()) return tables_.note();
  return L"The model database " + quoted(database_.location()) +
         L" keeps no history: that is done by models in files alone.";
}

void History::on_begin() {
  RowRecorder& recorder = require_recorder();
  counter_ = recorder.change_counter();
  bounds_ = tables_.bounds();
  is_step_made_ = false;
  if (is_own_change_) return;
  if (!bounds_.are_sound()) fail_as_damaged_history();
  if (!bounds_.is_off()) {
    recorder.begin(static_cast<std::size_t>(bounds_.bytes));
  }
}

void History::before_commit() {
  if (is_own_change_ || bounds_.is_off()) return;
  const Recording recording = require_recorder().recording();
  if (recording.size == 0 && !recording.is_incomplete && recording.fault.empty()) {
    // The file's counter goes on nevertheless, and it was not another program.
    const bool was_changed = database_.is_changed();
    if (tables_.known_counter() == counter_) tables_.set_known_counter(counter_ + 1);
    if (!was_changed) database_.mark_unchanged();
    return;
  }
  tables_.make();
  notice_others();
  tables_.drop_undone();
  if (recording.is_incomplete || !recording.fault.empty()) {
    end_before(recording);
  } else {
    add_step(recording);
  }
}

void History::on_end(bool is_kept) noexcept {
  if (is_kept && is_step_made_) next_name_.clear();
  is_step_made_ = false;
}

void History::add_step(const Recording& recording) {
  Step step{.name = next_name_, .made_at = now(), .tables = recording.tables};
  if (step.name.empty()) step.name = step_name(step.tables, terms_.nouns);
  tables_.add(step, recording);
  tables_.set_known_counter(counter_ + 1);
  tables_.drop_beyond(bounds_);
  is_step_made_ = true;
}

void History::end_before(const Recording& recording) {
  tables_.drop_all();
  std::wstring note = L"The history begins after a change of " + now();
  if (!next_name_.empty()) note += L", " + quoted(next_name_) + L",";
  if (recording.is_incomplete) {
    note += L" that takes more than the " + std::to_wstring(bounds_.bytes) +
            L" bytes which the history may have. To be able to undo such a change, set "
            L"History.MaximumBytes to more before it.";
  } else {
    note += L" that cannot be undone: " + recording.fault + L".";
  }
  tables_.set_note(note);
  is_step_made_ = true;
}

/// Steps that are there may refer to rows that another program has changed.
void History::notice_others() {
  const auto known = tables_.known_counter();
  if (known && (counter_ == 0 || *known != counter_)) tables_.set_overtaken();
}

template <class Work>
void History::change(const wchar_t* doing, Work&& work) {
  require_recorder();
  if (database_.transactions().is_open()) {
    fail(kInvalidTransaction, L"A transaction is open in the model database " +
                                  quoted(database_.location()) + L", so that nothing can be " +
                                  doing + L" now. Commit it or roll it back first.");
  }
  const Flag own(is_own_change_);
  Savepoint whole(database_);
  work();
  if (tables_.exist()) tables_.set_known_counter(counter_ + 1);
  whole.release();
}

std::vector<Step> History::undo(std::optional<long> first) {
  std::vector<Step> steps;
  change(L"undone", [&] {
    if (tables_.exist()) notice_others();
    tables_.require_sound();
    steps = steps_to_undo(first);
    replay(steps, true);
  });
  return steps;
}

std::vector<Step> History::redo(std::optional<long> last) {
  std::vector<Step> steps;
  change(L"redone", [&] {
    if (tables_.exist()) notice_others();
    tables_.require_sound();
    steps = steps_to_redo(last);
    replay(steps, false);
  });
  return steps;
}

std::vector<Step> History::steps_to_undo(std::optional<long> first) {
  const auto last = tables_.last_done();
  if (!last) {
    const std::wstring why = tables_.note();
    fail(kItemNotFound, L"There is nothing to undo in the model database " +
                            quoted(database_.location()) + L"." + (why.empty() ? L"" : L" ") + why);
  }
  auto steps = tables_.between(first.value_or(*last), *last);
  if (first && (steps.empty() || steps.front().number != *first)) fail_on_number(*first, L"undone");
  std::ranges::reverse(steps);
  return steps;
}

std::vector<Step> History::steps_to_redo(std::optional<long> last) {
  const auto first = tables_.first_undone();
  if (!first) {
    fail(kItemNotFound, L"There is nothing to redo in the model database " +
                            quoted(database_.location()) +
                            L": no step was undone, or a new one was made since.");
  }
  auto steps = tables_.between(*first, last.value_or(*first));
  if (last && (steps.empty() || steps.back().number != *last)) fail_on_number(*last, L"redone");
  return steps;
}

void History::fail_on_number(long number, const wchar_t* doing) {
  const std::wstring step = L"Step " + std::to_wstring(number);
  if (tables_.find(number)) {
    fail(kItemNotFound, step + L" cannot be " + doing + L": it already is. History tells which " +
                            L"steps are undone.");
  }
  const auto all = tables_.steps();
  fail(kItemNotFound, step + L" is not in the history, which goes from step " +
                          std::to_wstring(all.front().number) + L" to step " +
                          std::to_wstring(all.back().number) +
                          L". Nothing was changed. Give the number of one of these.");
}

void History::replay(const std::vector<Step>& steps, bool undo) {
  const auto after_others = std::ranges::find(steps, true, &Step::is_overtaken);
  std::optional<ReferenceWatch> watch;
  // Seen before anything changes, and asked when all is done.
  if (after_others != steps.end() || counter_ == 0) {
    std::set<std::wstring> tables;
    for (const Step& step : steps) {
      for (const RecordedTable& table : step.tables) tables.insert(table.name);
    }
    watch.emplace(database_, terms_.references, tables);
  }
  for (const Step& step : steps) replay(step, undo);
  if (!watch) return;
  try {
    watch->require_no_others();
  } catch (const com::Error& error) {
    fail(error.result(), shown(steps.back()) + L" cannot be " + (undo ? L"undone. " : L"redone. ") +
                             sentence_of(error) + L" Nothing was changed.");
  }
}

void History::replay(const Step& step, bool undo) {
  try {
    require_recorder().replay(tables_.bytes_of(step.number), step.tables, undo);
  } catch (const com::Error& error) {
    if (error.result() != kIntegrityViolation) throw;
    fail(error.result(), shown(step) + L" cannot be " + (undo ? L"undone. " : L"redone. ") +
                             sentence_of(error) +
                             L" Nothing was changed. Give the row back what it had, or go on "
                             L"without what lies before (History.Clear).");
  }
  tables_.set_undone(step.number, undo);
}

void History::set_bounds(const HistoryBounds& bounds) {
  const bool was_changed = database_.is_changed();
  change(L"set in the history", [&] {
    tables_.make();
    tables_.set_bounds(bounds.sound());
    if (bounds.is_off()) {
      tables_.drop_all();
      tables_.set_note(L"The history is switched off: History.MaximumSteps is 0.");
    } else {
      if (bounds_.is_off()) tables_.set_note(L"");
      tables_.drop_beyond(bounds.sound());
    }
  });
  // The model is as it was.
  if (!was_changed) database_.mark_unchanged();
}

void History::clear() {
  const bool was_changed = database_.is_changed();
  change(L"cleared", [&] {
    if (!tables_.exist()) return;
    if (!bounds_.are_sound()) tables_.set_bounds(bounds_.sound());
    tables_.drop_all();
    tables_.set_note(L"");
  });
  if (!was_changed) database_.mark_unchanged();
}

}  // namespace modeldb
