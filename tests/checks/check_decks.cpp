// Checks decks, without a model database in between.
//
//   check_decks FOLDER < NAMES
//
// NAMES are names of decks, one a line. Prints an object a line: "deck", and "error" of a deck that
// cannot be read, or else "answer" as orv check --json prints it, and "steps" with what there is to
// hold against the solver's reactions.

#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/checks/acting.h"
#include "tools/checks/check.h"
#include "tools/checks/json.h"
#include "tools/checks/places.h"
#include "tools/checks/resultants.h"
#include "tools/deck/deck.h"
#include "tools/deck/import.h"
#include "tools/deck/systems.h"

namespace {

using Json = nlohmann::ordered_json;

/// The nodes that are held or moved in a step, and what acts on all others: the solver's reactions
/// are in balance with that, since it does not print loads on what is held.
Json reactions_in(const checks::Subject& subject, const checks::Acting& acting) {
  const checks::Places places(subject.content.vertices);
  std::map<content::Key, content::Vector> held;
  bool has_held_rotation = false;
  bool has_amplitude = false;
  checks::Resultant sum;
  acting.each([&](const checks::Action& action) {
    const checks::Statement& what = action.what;
    const bool is_support =
        what.effect == checks::Effect::held || what.effect == checks::Effect::moved;
    if (!is_support || what.freedom > 6) return;
    has_held_rotation |= what.freedom > 3;
    if (const content::Vector* const place = places.of(what.node)) held.emplace(what.node, *place);
  });
  acting.each([&](const checks::Action& action) {
    const checks::Statement& what = action.what;
    if (what.effect != checks::Effect::force || action.load_case != 1) return;
    has_amplitude |= what.multiplier != 0;
    const auto vector = checks::global_vector(subject, what);
    const content::Vector* const place = places.of(what.node);
    if (!vector || place == nullptr || held.contains(what.node)) return;
    if (what.freedom > 3) {
      sum.add_moment(*vector);
    } else {
      sum.add_force(*vector, *place);
    }
  });
  Json nodes = Json::array();
  for (const auto& [node, place] : held) nodes.push_back({node, place});
  return {{"held", nodes},
          {"has_held_rotation", has_held_rotation},
          {"has_amplitude", has_amplitude},
          {"force", sum.force},
          {"moment", sum.moment},
          {"force_size", sum.force_size},
          {"moment_size", sum.moment_size}};
}

Json steps_of(const checks::Subject& subject) {
  const checks::Schedule schedule = checks::schedule_of(subject);
  checks::Acting acting(subject, schedule);
  Json steps = Json::array();
  for (int step = 1; step <= schedule.steps; ++step) {
    acting.enter(step);
    steps.push_back(reactions_in(subject, acting));
  }
  return steps;
}

Json look_at(const std::string& path) {
  const deck::Deck deck = deck::read(path);
  deck::Imported imported = deck::import(deck);
  const checks::Subject subject{imported.content, imported.source, deck.step_count(),
                                deck::axes_of(deck)};
  Json answer{
      {"answer", Json::parse(checks::json(checks::check(subject), checks::resultants_of(subject)))},
      {"steps", steps_of(subject)}};
  return answer;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  for (std::string name; std::getline(std::cin, name);) {
    Json answer{{"deck", name}};
    try {
      answer.update(look_at(std::string(arguments[1]) + "/" + name + ".inp"));
    } catch (const deck::Error& error) {
      answer["error"] = error.what();
    }
    std::cout << answer.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
  }
}
