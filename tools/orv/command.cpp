#include "tools/orv/command.h"

#include <map>

namespace orv {
namespace {

std::multimap<int, Command::Add>& commands() {
  static std::multimap<int, Command::Add> commands;
  return commands;
}

}  // namespace

Command::Command(int place, Add add) { commands().emplace(place, add); }

void Command::add_all(CLI::App& program) {
  for (const auto& [place, add] : commands()) add(program);
}

void add_example(CLI::App* command, const std::string& lines) {
  command->footer("\nExample:\n  " + lines);
}

}  // namespace orv
