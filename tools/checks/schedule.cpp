#include "tools/checks/schedule.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <utility>

#include "tools/deck/kinds.h"
#include "tools/deck/place.h"

namespace checks {
namespace {

using content::Key;

constexpr std::int32_t kBehindAll = std::numeric_limits<std::int32_t>::max();

/// What is known of when the records of a set act.
struct Target {
  std::string name;
  std::optional<int> step;  ///< nothing: not named
  bool is_initial = false;
  bool is_unclear = false;
  const content::SetSource* source = nullptr;
};

class Scheduler {
 public:
  explicit Scheduler(const Subject& subject) : subject_(subject) {}

  Schedule run() {
    find_targets();
    for (const content::Table& table : subject_.content.tables) add_table(table);
    std::ranges::stable_sort(schedule_.batches, [](const Batch& a, const Batch& b) {
      return std::pair(a.step, a.line) < std::pair(b.step, b.line);
    });
    return std::move(schedule_);
  }

 private:
  using SetKey = std::pair<std::string_view, Key>;

  void find_targets() {
    std::map<SetKey, const content::SetSource*> sources;
    for (const content::SetSource& source : subject_.source.sets) {
      sources.emplace(SetKey(source.table, source.set), &source);
    }
    for (const content::SetTable& table : subject_.content.set_tables) {
      if (table.name == "DesignScenarios") continue;
      for (const content::Set& set : table.sets) {
        Target target{set.name, {}};
        const auto source = sources.find({table.name, set.id});
        if (source != sources.end()) {
          target.source = source->second;
          target.step = target.source->step;
          target.is_initial = target.source->keyword == "INITIALCONDITIONS";
        } else if (const auto named = deck::step_in_name(set.name)) {
          target.is_unclear = named->is_unclear;
          if (!target.is_unclear) target.step = named->step;
          target.is_initial = named->is_initial;
        }
        schedule_.steps = std::max(schedule_.steps, target.step.value_or(0));
        if (target.step || target.is_initial) {
          schedule_.sets.push_back({table.name, set.id, target.step.value_or(0)});
        }
        targets_.emplace(SetKey(table.name, set.id), std::move(target));
      }
    }
    if (subject_.steps > 0) schedule_.steps = subject_.steps;
    // A card without records may still say OP=NEW.
    for (const auto& [key, target] : targets_) {
      if (target.source != nullptr && !target.is_initial) {
        schedule_.batches.push_back(from_card(target, key.second));
      }
    }
  }

  Batch from_card(const Target& target, Key set) const {
    const content::SetSource& source = *target.source;
    Batch batch;
    batch.step = source.step;
    batch.line = source.line;
    batch.keyword = source.keyword;
    batch.set = set;
    batch.set_name = target.name;
    for (const deck::Parameter& parameter : deck::parameters_from(source.parameters)) {
      if (parameter.name == "OP") batch.is_new = parameter.value == "NEW";
      if (parameter.name == "LOADCASE") batch.load_case = parameter.value == "2" ? 2 : 1;
      if (parameter.name == "AMPLITUDE") batch.multiplier = number_of(parameter.value);
    }
    return batch;
  }

  Key number_of(const std::string& amplitude) const {
    const auto found =
        std::ranges::find(subject_.source.amplitudes, amplitude, &content::Numbered::name);
    return found == subject_.source.amplitudes.end() ? 0 : found->number;
  }

  void add_table(const content::Table& table) {
    std::map<Key, std::vector<std::size_t>> by_set;
    for (std::size_t record = 0; record < table.size(); ++record) {
      const bool is_in_set = record < table.set_ids.size() && !table.set_ids[record].empty();
      if (!is_in_set) by_set[0].push_back(record);
      if (!is_in_set) continue;
      for (const Key set : table.set_ids[record]) by_set[set].push_back(record);
    }
    for (auto& [set, records] : by_set) add_set(table, set, std::move(records));
  }

  /// Sets of design scenarios, and links that lead nowhere, say no more than no set at all.
  void add_set(const content::Table& table, Key set, std::vector<std::size_t> records) {
    static const Target nothing;
    const auto found = targets_.find({table.sets, set});
    const Target& target = found == targets_.end() ? nothing : found->second;
    const auto kind = std::ranges::find(deck::kKindNames, table.name, &deck::KindNames::table);
    const bool is_carried = kind != deck::kKindNames.end();
    const std::string keyword(
        is_carried ? deck::keyword_of(static_cast<deck::Kind>(kind - deck::kKindNames.begin()),
                                      target.is_initial)
                   : "");
    if (const auto why = why_idle(target, keyword, is_carried)) {
      schedule_.idle.push_back({*why, &table, set, target.name, std::move(records)});
      return;
    }
    if (target.is_initial) return;
    Batch batch;
    if (target.source != nullptr && target.source->keyword == keyword) {
      batch = from_card(target, set);
    } else {
      batch.step = target.step.value_or(1);
      batch.line = kBehindAll;
      batch.keyword = keyword;
      batch.set = set;
      batch.set_name = target.name;
    }
    batch.table = &table;
    batch.records = std::move(records);
    schedule_.batches.push_back(std::move(batch));
  }

  std::optional<Idle::Why> why_idle(const Target& target, const std::string& keyword,
                                    bool is_carried) const {
    if (target.is_unclear) return Idle::Why::no_such_step;
    if (!target.step && !target.is_initial) {
      return schedule_.steps > 1 && is_carried ? std::optional(Idle::Why::no_step) : std::nullopt;
    }
    if (target.step.value_or(0) > schedule_.steps) return Idle::Why::no_such_step;
    if (target.is_initial) {
      return keyword == "INITIALCONDITIONS" ? std::nullopt : std::optional(Idle::Why::not_initial);
    }
    const bool is_late = is_carried && keyword != "BOUNDARY";
    return *target.step == 0 && is_late ? std::optional(Idle::Why::not_before_steps) : std::nullopt;
  }

  const Subject& subject_;
  Schedule schedule_;
  std::map<SetKey, Target> targets_;
};

}  // namespace

std::vector<bool> records_in_step(const Schedule& schedule, const content::Table& table, int step) {
  std::map<Key, int> step_of_set;
  for (const SetStep& set : schedule.sets) {
    if (set.table == table.sets) step_of_set[set.set] = set.step;
  }
  const int otherwise = schedule.steps == 1 ? 1 : -1;
  std::vector<bool> belongs;
  for (const std::vector<Key>& sets : table.set_ids) {
    belongs.push_back(sets.empty() ? step == otherwise : std::ranges::any_of(sets, [&](Key set) {
      const auto found = step_of_set.find(set);
      return step == (found == step_of_set.end() ? otherwise : found->second);
    }));
  }
  return belongs;
}

Schedule schedule_of(const Subject& subject) { return Scheduler(subject).run(); }

}  // namespace checks
