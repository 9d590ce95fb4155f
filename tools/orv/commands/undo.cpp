// orv undo and orv redo: take changes of a model back, and repeat them.

#include <iostream>
#include <memory>
#include <optional>

#include "tools/orv/arguments.h"
#include "tools/orv/command.h"
#include "tools/orv/step_states.h"

namespace orv {
namespace {

struct Direction {
  HRESULT (STDMETHODCALLTYPE IModelDatabaseFile::*move)(VARIANT step);
  const char* command;
  const char* summary;
  const char* step;
};

constexpr Direction kUndo{
    .move = &IModelDatabaseFile::Undo,
    .command = "undo",
    .summary = "Takes the last change of a model back, or all from a step on",
    .step = "The first step to take back, with all after it; without it the last one"};
constexpr Direction kRedo{
    .move = &IModelDatabaseFile::Redo,
    .command = "redo",
    .summary = "Repeats what was undone last in a model, or all up to a step",
    .step = "The last step to repeat, with all before it; without it the first that is undone"};

struct Options {
  std::string model;
  std::optional<long> step;
};

void run(const Direction& direction, const Options& options) {
  const ModelFile model = ModelFile::open(options.model);
  const StepStates before(model);
  com::check((model.object()->*direction.move)(step_argument(options.step)), model.object());
  StepStates(model).print_changes(std::cout, before);
}

void add(CLI::App& program, const Direction& direction) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(direction.command, direction.summary);
  command->add_option("MODEL", options->model, "The model")->required();
  command->add_option("STEP", options->step, direction.step)->check(whole_number());
  add_example(command, "orv " + std::string(direction.command) + " plate.orvdb 12");
  command->callback([&direction, options] { run(direction, *options); });
}

const Command undo(35, [](CLI::App& program) { add(program, kUndo); });
const Command redo(36, [](CLI::App& program) { add(program, kRedo); });

}  // namespace
}  // namespace orv
