// orv acting: what acts in a step.

#include <iostream>
#include <memory>

#include "tools/checks/step_actions.h"
#include "tools/checks/text.h"
#include "tools/model/subject.h"
#include "tools/orv/command.h"
#include "tools/orv/model_file.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  int step = 1;
  bool json = false;
};

void run(const Options& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  const model::CheckedModel checked(database);
  const checks::Subject& subject = checked.subject();
  model::require_step(subject, options.step);
  if (options.json) {
    std::cout << checks::actions_json(subject, options.step);
    return;
  }
  const std::string text = checks::acting_text(subject, options.step);
  std::cout << (text.empty() ? "Nothing acts in this step.\n" : text);
}

const Command command(50, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const acting = program.add_subcommand(
      "acting", "Tells what acts in a step, with what earlier steps left behind");
  acting->add_option("MODEL", options->model, "The model")->required();
  acting->add_option("STEP", options->step, "Number of the step; 0 is the part before the first")
      ->required();
  acting->add_flag("--json", options->json, "A JSON array of objects, one on each line");
  add_example(acting, "orv acting plate.orvdb 2");
  acting->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
