#include "tools/checks/resultants.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "tools/checks/acting.h"
#include "tools/checks/places.h"

namespace checks {
namespace {

class Summing {
 public:
  Summing(const Subject& subject, const std::array<double, 3>& about)
      : subject_(subject), about_(about), places_(subject.content.vertices) {}

  std::vector<Resultant> run() {
    add_sets();
    add_steps();
    return std::move(sums_);
  }

 private:
  Resultant named(const std::string& name) const {
    Resultant sum;
    sum.of = name;
    sum.point = about_;
    return sum;
  }

  void add_sets() {
    std::map<content::Key, Resultant> by_set;
    for (const content::SetTable& table : subject_.content.set_tables) {
      if (table.name != "LoadSets") continue;
      for (const content::Set& set : table.sets) by_set.emplace(set.id, named(set.name));
    }
    for (const content::Table& table : subject_.content.tables) {
      if (!has_forces(table)) continue;
      for (std::size_t record = 0; record < table.size(); ++record) {
        if (record >= table.set_ids.size()) continue;
        for (const content::Key set : table.set_ids[record]) {
          const auto found = by_set.find(set);
          if (found != by_set.end()) add(found->second, table, record);
        }
      }
    }
    for (auto& [set, sum] : by_set) {
      if (sum.records + sum.left_out > 0) sums_.push_back(std::move(sum));
    }
  }

  void add(Resultant& sum, const content::Table& table, std::size_t record) const {
    const auto vector = content::load_vector(table, record, subject_.axes);
    if (!add(sum, table.name == "NodalMoments", vector, table.vertices[record])) ++sum.left_out;
    if (content::Row(table, record)["MultiplierTableID"] > 1) ++sum.with_amplitude;
  }

  /// False, if it cannot be added.
  bool add(Resultant& sum, bool is_moment, const std::optional<content::Vector>& vector,
           content::Key node) const {
    if (!vector || !std::isfinite((*vector)[0] + (*vector)[1] + (*vector)[2])) return false;
    const content::Vector* const place = places_.of(node);
    if (is_moment) {
      sum.add_moment(*vector);
    } else if (place != nullptr) {
      sum.add_force(*vector, *place);
    } else {
      return false;
    }
    return true;
  }

  void add_steps() {
    const Schedule schedule = schedule_of(subject_);
    Acting acting(subject_, schedule);
    acting.enter(0);
    for (int step = 1; step <= schedule.steps; ++step) {
      acting.enter(step);
      sums_.push_back(sum_of(acting));
    }
  }

  Resultant sum_of(const Acting& acting) const {
    Resultant sum = named("Step " + std::to_string(acting.step()));
    sum.step = acting.step();
    Records added;
    Records left_out;
    Records with_amplitude;
    acting.each([&](const Action& action) {
      // The second load case is the imaginary part of the first.
      if (action.what.effect != Effect::force || action.load_case != 1) return;
      const bool is_added =
          add(sum, action.what.freedom > 3, global_vector(subject_, action.what), action.what.node);
      for (const Origin& from : action.from) {
        (is_added ? added : left_out).emplace_back(from.batch->table, from.record);
        if (action.what.multiplier == 0) continue;
        with_amplitude.emplace_back(from.batch->table, from.record);
      }
    });
    sum.records = count(added);
    sum.left_out = count(left_out);
    sum.with_amplitude = count(with_amplitude);
    return sum;
  }

  using Records = std::vector<std::pair<const content::Table*, std::size_t>>;

  /// A record may act on several degrees of freedom.
  static std::size_t count(Records& records) {
    std::ranges::sort(records, [](const auto& a, const auto& b) {
      return std::pair(a.first->name, a.second) < std::pair(b.first->name, b.second);
    });
    const auto rest = std::ranges::unique(records);
    return records.size() - rest.size();
  }

  const Subject& subject_;
  const std::array<double, 3>& about_;
  Places places_;
  std::vector<Resultant> sums_;
};

}  // namespace

std::optional<content::Vector> global_vector(const Subject& subject, const Statement& force) {
  const std::size_t axis = (force.freedom - 1U) % 3;
  content::Vector vector{};
  if (force.system == 0) {
    vector.at(axis) = force.value;
    return vector;
  }
  const auto axes = subject.axes ? subject.axes(force.system, force.node) : std::nullopt;
  if (!axes) return std::nullopt;
  for (std::size_t i = 0; i < 3; ++i) vector.at(i) = force.value * axes->at(axis).at(i);
  return vector;
}

std::vector<Resultant> resultants_of(const Subject& subject, const std::array<double, 3>& about) {
  return Summing(subject, about).run();
}

}  // namespace checks
