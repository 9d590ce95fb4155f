// orv acting: what acts in a step.

#include <iostream>
#include <memory>
#include <string>

#include "tools/checks/step_actions.h"
#include "tools/checks/text.h"
#include "tools/model/subject.h"
#include "tools/orv/arguments.h"
#include "tools/orv/command.h"
#include "tools/orv/model_file.h"
#include "tools/orv/progress.h"
#include "tools/orv/table.h"
#include "tools/orv/terminal.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  int step = 1;
  bool json = false;
};

/// Of further records only where they come from.
void add(const checks::StepAction& action, Table& table) {
  bool is_first = true;
  for (const checks::ActingRecord& record : action.records) {
    const auto once = [is_first](const std::string& text) { return is_first ? text : ""; };
    table.add_number(once(std::to_string(action.node)));
    table.add_number(once(action.freedom == 0 ? "" : std::to_string(action.freedom)));
    table.add_number(once(action.has_value ? checks::number_text(action.value) : ""));
    table.add_text(once(std::string(action.what)));
    table.add_text(once(action.amplitude));
    table.add_number(once(std::to_string(action.step)));
    table.add_text(record.name);
    table.add_text(record.set);
    is_first = false;
  }
}

void run(const Options& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  std::string json;
  Table table({"node", "dof", "value", "what", "amplitude", "step", "record", "set"});
  {
    const Progress progress("Reading " + options.model);
    const model::CheckedModel checked(database);
    const checks::Subject& subject = checked.subject();
    model::require_step(subject, options.step);
    if (options.json) json = checks::actions_json(subject, options.step);
    if (!options.json) {
      checks::each_action(subject, options.step,
                          [&table](const checks::StepAction& action) { add(action, table); });
    }
  }
  if (options.json) {
    std::cout << json;
  } else if (table.rows() == 0) {
    std::cout << "Nothing acts in this step.\n";
  } else {
    table.write(std::cout, terminal_width());
  }
}

const Command command(50, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const acting = program.add_subcommand(
      "acting", "Tells what acts in a step, with what earlier steps left behind");
  acting->add_option("MODEL", options->model, "The model")->required();
  acting->add_option("STEP", options->step, "Number of the step; 0 is the part before the first")
      ->check(whole_number())
      ->required();
  acting->add_flag("--json", options->json, "A JSON array of objects, one on each line");
  add_example(acting, "orv acting plate.orvdb 2");
  acting->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
