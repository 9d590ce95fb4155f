#include <algorithm>
#include <ranges>

#include "tools/checks/acting.h"
#include "tools/checks/single_checks.h"

namespace checks {
namespace {

class StepChecks {
 public:
  StepChecks(const Subject& subject, const Schedule& schedule, Findings& findings)
      : subject_(subject), schedule_(schedule), findings_(findings), acting_(subject, schedule) {}

  void run() {
    for (int step = 0; step <= schedule_.steps; ++step) {
      acting_.enter_next([this](const Action& before, const Statement& now, const Origin& from) {
        if (before.step == acting_.step()) look_at_clash(before, now, from);
      });
      look_at_loads();
      if (step > 0) look_for_supports();
    }
  }

 private:
  void add(Code code, const Origin& from) {
    findings_.add(code, *from.batch->table, from.record, from.batch->set_name, acting_.step());
  }

  /// Two records of a step speak of one degree of freedom.
  void look_at_clash(const Action& before, const Statement& now, const Origin& from) {
    const content::Table& table = *from.batch->table;
    const bool is_in_sets = table.set_ids[from.record].size() > 1;
    const bool is_same_record =
        is_in_sets && std::ranges::any_of(before.from, [&from](const Origin& each) {
          return each.batch->table == from.batch->table && each.record == from.record;
        });
    switch (now.effect) {
      case Effect::force:
      case Effect::heat:
        if (is_same_record) return add(Code::in_two_sets, from);
        if (now.multiplier != before.what.multiplier) return add(Code::two_amplitudes, from);
        if (now.value != 0 && says_the_same(before, now)) add(Code::load_twice, from);
        return;
      case Effect::held:
        add(before.what.effect == Effect::held ? Code::support_twice : Code::held_and_moved, from);
        return;
      case Effect::moved:
        if (before.what.effect == Effect::held) return add(Code::held_and_moved, from);
        [[fallthrough]];
      case Effect::temperature:
        if (now.value == before.what.value) return add(Code::support_twice, from);
        return add(Code::moved_twice, from);
      default:
        return;
    }
  }

  /// Whether one of the records that made the sum has just this value.
  static bool says_the_same(const Action& before, const Statement& now) {
    // A degree of freedom that carries more than that carries a sum on purpose.
    constexpr std::size_t kMost = 1000;
    std::vector<Statement> statements;
    for (const Origin& each : before.from | std::views::take(kMost)) {
      read_statements(*each.batch->table, each.record, statements);
      for (const Statement& one : statements) {
        if (one.freedom == now.freedom && one.value == now.value) return true;
      }
    }
    return false;
  }

  void look_at_loads() {
    acting_.each([this](const Action& action) {
      const bool is_load =
          action.what.effect == Effect::force || action.what.effect == Effect::heat;
      if (!is_load || action.what.value == 0) return;
      const Action* const support =
          acting_.support_at(action.what.node, action.what.freedom, action.load_case);
      if (support == nullptr) return;
      // Told once, in the step that brings them together.
      if (std::max(support->step, action.step) != acting_.step()) return;
      for (const Origin& from : action.from) add(Code::load_on_support, from);
    });
  }

  void look_for_supports() {
    bool has_force = false;
    bool is_held = false;
    acting_.each([&](const Action& action) {
      has_force |= action.what.effect == Effect::force && action.what.value != 0;
      is_held |= action.what.effect == Effect::held ||
                 (action.what.effect == Effect::moved && action.what.freedom <= 6);
      // Springs to the ground, and displacements along any vector.
      for (const Origin& from : action.from) {
        if (action.what.effect != Effect::other) break;
        const std::string& name = from.batch->table->name;
        is_held |= name == "NodalElasticBoundaries" || name == "NodalDisplacementBoundaries" ||
                   name == "NodalPrescribedDisplacements" || name == "NodalPrescribedVelocities";
      }
    });
    if (!has_force || is_held) return;
    // A deck may hold the model by cards that no record carries, or let it move freely.
    const Severity severity = subject_.source.deck.empty() ? Severity::error : Severity::warning;
    findings_.add_step(Code::no_support, severity, acting_.step());
  }

  const Subject& subject_;
  const Schedule& schedule_;
  Findings& findings_;
  Acting acting_;
};

}  // namespace

void check_steps(const Subject& subject, const Schedule& schedule, Findings& findings) {
  StepChecks(subject, schedule, findings).run();
}

}  // namespace checks
