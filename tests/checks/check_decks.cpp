// Checks decks, without a model database in between: prints for each deck what orv check --json
// prints for its model, with what acts in its steps.
//
//   check_decks FOLDER < NAMES
//
// NAMES are names of decks, one a line. What is printed for a deck is an object on one line:
// "deck", "error" of a deck that cannot be read, or else "answer", and "steps" with the nodes that
// are held or moved, and the nodes that carry forces, with freedom and value.

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/checks/acting.h"
#include "tools/checks/check.h"
#include "tools/checks/json.h"
#include "tools/checks/resultants.h"
#include "tools/deck/deck.h"
#include "tools/deck/import.h"
#include "tools/deck/systems.h"

namespace {

using Json = nlohmann::ordered_json;

Json steps_of(const checks::Subject& subject) {
  const checks::Schedule schedule = checks::schedule_of(subject);
  checks::Acting acting(subject, schedule);
  acting.enter(0);
  Json steps = Json::array();
  for (int step = 1; step <= schedule.steps; ++step) {
    acting.enter(step);
    Json held = Json::array();
    Json loads = Json::array();
    acting.each([&](const checks::Action& action) {
      const checks::Statement& what = action.what;
      if (what.effect == checks::Effect::held || what.effect == checks::Effect::moved) {
        held.push_back({what.node, what.freedom});
      }
      if (what.effect == checks::Effect::force && action.load_case == 1) {
        loads.push_back({what.node, what.freedom, what.value, what.system, what.multiplier});
      }
    });
    steps.push_back({{"held", held}, {"loads", loads}});
  }
  return steps;
}

Json look_at(const std::string& path) {
  const deck::Deck deck = deck::read(path);
  deck::Imported imported = deck::import(deck);
  const checks::Subject subject{imported.content, imported.source, deck.steps, deck::axes_of(deck)};
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
