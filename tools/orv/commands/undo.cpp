// orv undo: takes the last change of a model back, or all from a step on.

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
  com::check(model.object()->Undo(step_argument(options.step)), model.object());
  StepStates(model).print_changes(std::cout, before);
}

const Command command(35, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const undo = program.add_subcommand(
      "undo", "Takes the last change of a model back, or all from a step on");
  undo->add_option("MODEL", options->model, "The model")->required();
  undo->add_option("STEP", options->step,
                   "The first step to take back, with all after it; without it the last one");
  add_example(undo, "orv undo plate.orvdb 12");
  undo->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
