// orv redo: repeats what was undone last in a model, or all up to a step.

#include <iostream>
#include <memory>
#include <optional>

#include "tools/orv/command.h"
#include "tools/orv/step_states.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  std::optional<long> step;
};

void run(const Options& options) {
  const ModelFile model = ModelFile::open(options.model);
  const StepStates before(model);
  com::check(model.object()->Redo(step_argument(options.step)), model.object());
  StepStates(model).print_changes(std::cout, before);
}

const Command command(36, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const redo = program.add_subcommand(
      "redo", "Repeats what was undone last in a model, or all up to a step");
  redo->add_option("MODEL", options->model, "The model")->required();
  redo->add_option(
      "STEP", options->step,
      "The last step to repeat, with all before it; without it the first that is undone");
  add_example(redo, "orv redo plate.orvdb 12");
  redo->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
