#pragma once

#include <CLI/CLI.hpp>

namespace orv {

/// A command of the program. Each stands in a file of its own in commands/, which defines one of
/// these and is found by the build:
///
///     const Command command(30, [](CLI::App& program) {
///       CLI::App* const list = program.add_subcommand("list", "prints what a model holds");
///       …
///       list->callback([options] { run(*options); });
///     });
///
/// What the callback raises ends the program with a sentence (main.cpp).
class Command {
 public:
  using Add = void (*)(CLI::App& program);

  /// Commands stand in the help by their `place`.
  Command(int place, Add add);

  /// Adds all commands to the program.
  static void add_all(CLI::App& program);
};

/// Adds an example to the end of a command's help.
void add_example(CLI::App* command, const std::string& lines);

}  // namespace orv
