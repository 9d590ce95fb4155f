#include <algorithm>
#include <set>
#include <utility>

#include "tools/checks/single_checks.h"

namespace checks {
namespace {

using SetKey = std::pair<std::string_view, content::Key>;

/// A card without data may be meant so: *CLOAD, OP=NEW ends all loads.
bool comes_from_card(const content::Source& source, const std::string& table, content::Key set) {
  return std::ranges::any_of(source.sets, [&](const content::SetSource& each) {
    return each.table == table && each.set == set;
  });
}

Code code_of(Idle::Why why) {
  switch (why) {
    case Idle::Why::no_such_step:
      return Code::no_such_step;
    case Idle::Why::not_before_steps:
      return Code::not_before_steps;
    case Idle::Why::not_initial:
      return Code::not_initial;
    default:
      return Code::no_step;
  }
}

}  // namespace

void check_sets(const Subject& subject, const Schedule& schedule, Findings& findings) {
  std::set<SetKey> used;
  for (const content::Table& table : subject.content.tables) {
    for (std::size_t record = 0; record < table.size(); ++record) {
      const bool is_in_set = record < table.set_ids.size() && !table.set_ids[record].empty();
      // With several steps it is an error, which the idle batches tell.
      const bool may_belong = !table.sets.empty() && table.sets != "DesignScenarios";
      if (!is_in_set && may_belong && schedule.steps == 1) {
        findings.add(Code::no_set, table, record);
      }
      if (!is_in_set) continue;
      for (const content::Key set : table.set_ids[record]) used.emplace(table.sets, set);
    }
  }
  for (const content::SetTable& table : subject.content.set_tables) {
    for (const content::Set& set : table.sets) {
      if (used.contains({table.name, set.id})) continue;
      const bool is_card = comes_from_card(subject.source, table.name, set.id);
      findings.add_set(Code::empty_set, is_card ? Severity::note : Severity::warning, table.name,
                       set);
    }
  }
  for (const Idle& idle : schedule.idle) {
    for (const std::size_t record : idle.records) {
      findings.add(code_of(idle.why), *idle.table, record, idle.set_name);
    }
  }
}

}  // namespace checks
