#include "tools/checks/acting.h"

#include <set>

namespace checks {

std::size_t Acting::Hash::operator()(const Spot& spot) const {
  std::uint64_t hash = static_cast<std::uint32_t>(spot.node);
  hash = hash << 32 | static_cast<std::uint32_t>(spot.system);
  hash ^= static_cast<std::uint64_t>(spot.freedom * 2 + spot.load_case) << 24;
  // Spreads the low bits; the factor is 2^64 over the golden ratio.
  hash *= 0x9E3779B97F4A7C15U;
  return static_cast<std::size_t>(hash ^ hash >> 32);
}

void Acting::Group::clear() {
  actions.clear();
  at.clear();
}

Acting::Acting(const Subject& subject, const Schedule& schedule)
    : subject_(subject), schedule_(schedule) {
  for (const content::Table& table : subject.content.tables) {
    if (!has_forces(table)) continue;
    for (std::size_t record = 0; record < table.size(); ++record) {
      const double system = content::Row(table, record)["CoordinateSystemID"];
      if (system > 0) {
        system_of_node_[table.vertices[record]] = static_cast<content::Key>(system);
      }
    }
  }
}

Acting::GroupIndex Acting::group_of(Effect effect) {
  switch (effect) {
    case Effect::force:
      return kForces;
    case Effect::heat:
      return kHeat;
    case Effect::held:
    case Effect::moved:
      return kSupports;
    case Effect::temperature:
      return kTemperatures;
    default:
      return kOthers;
  }
}

void Acting::enter(int step) {
  while (step_ < step) enter_next();
}

void Acting::enter_next(const Clash& clash) {
  ++step_;
  std::set<std::string> keywords;  // that the step has had already
  for (; next_batch_ < schedule_.batches.size(); ++next_batch_) {
    const Batch& batch = schedule_.batches[next_batch_];
    if (batch.step > step_) break;
    const bool is_first = keywords.insert(batch.keyword).second;
    if (is_first && batch.is_new) end_earlier(batch.keyword);
    read(batch, clash);
  }
}

void Acting::end_earlier(const std::string& keyword) {
  if (keyword == "CLOAD") groups_[kForces].clear();
  if (keyword == "CLOAD" || keyword == "CFLUX") groups_[kHeat].clear();
  if (keyword == "BOUNDARY") groups_[kSupports].clear();
  if (keyword == "TEMPERATURE") groups_[kTemperatures].clear();
}

/// A force in the global system on a node that has one of its own, which the deck will have turned.
void Acting::turn_into_system_of_node(std::vector<Statement>& statements) const {
  if (statements.empty() || statements.front().effect != Effect::force) return;
  if (statements.front().system != 0) return;
  const auto system = system_of_node_.find(statements.front().node);
  if (system == system_of_node_.end() || !subject_.axes) return;
  const auto axes = subject_.axes(system->second, statements.front().node);
  if (!axes) return;
  const int first = statements.front().freedom > 3 ? 4 : 1;
  content::Vector global{};
  for (const Statement& each : statements) {
    global.at(static_cast<std::size_t>(each.freedom - first)) = each.value;
  }
  Statement turned = statements.front();
  turned.system = system->second;
  statements.clear();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const content::Vector& e = axes->at(axis);
    turned.freedom = static_cast<std::uint8_t>(first + static_cast<int>(axis));
    turned.value = global[0] * e[0] + global[1] * e[1] + global[2] * e[2];
    if (turned.value != 0) statements.push_back(turned);
  }
}

void Acting::read(const Batch& batch, const Clash& clash) {
  std::vector<Statement> statements;
  for (const std::size_t record : batch.records) {
    read_statements(*batch.table, record, statements);
    turn_into_system_of_node(statements);
    for (Statement& statement : statements) {
      const bool has_own = statement.effect == Effect::force || statement.effect == Effect::heat ||
                           statement.effect == Effect::moved;
      if (!has_own) statement.multiplier = batch.multiplier;
      put(statement, {&batch, record}, clash);
    }
  }
}

void Acting::put(const Statement& now, const Origin& from, const Clash& clash) {
  const GroupIndex index = group_of(now.effect);
  Group& group = groups_.at(index);
  const int load_case = from.batch->load_case;
  if (index == kOthers) {
    group.actions.push_back({now, step_, load_case, {from}});
    return;
  }
  const Spot spot{now.node, now.system, now.freedom, load_case};
  const auto [found, is_new] = group.at.emplace(spot, group.actions.size());
  if (is_new) {
    group.actions.push_back({now, step_, load_case, {from}});
    return;
  }
  Action& action = group.actions[found->second];
  if (clash) clash(action, now, from);
  const bool adds = (index == kForces || index == kHeat) && action.step == step_;
  if (adds) {
    action.what.value += now.value;
    action.what.multiplier = now.multiplier;
    action.from.push_back(from);
  } else {
    action = {now, step_, load_case, {from}};
  }
}

void Acting::each(const std::function<void(const Action&)>& use) const {
  for (const Group& group : groups_) {
    for (const Action& action : group.actions) use(action);
  }
}

const Action* Acting::support_at(content::Key node, int freedom, int load_case) const {
  const Group& supports = groups_[kSupports];
  const auto found = supports.at.find({node, 0, freedom, load_case});
  return found == supports.at.end() ? nullptr : &supports.actions[found->second];
}

}  // namespace checks
