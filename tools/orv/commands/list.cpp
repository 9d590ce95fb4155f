// orv list: what a model holds.

#include <iostream>
#include <memory>

#include "tools/orv/command.h"
#include "tools/orv/listing.h"
#include "tools/orv/model_file.h"
#include "tools/orv/output.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  std::string table;
  std::string set;
  std::string where;
  bool csv = false;
  bool json = false;
};

void write(Listing& listing, const Options& options) {
  if (options.csv) {
    write_csv(std::cout, listing);
  } else if (options.json) {
    write_json(std::cout, listing);
  } else if (write_table(std::cout, listing,
                         options.table.empty() ? Zeros::kShown : Zeros::kNamed) == 0) {
    std::cout << "The model holds none.\n";
  }
}

void run(const Options& options) {
  const ModelFile model = ModelFile::open(options.model);
  model::Database database = model.database();
  if (options.table.empty()) {
    Listing overview = Listing::overview(database);
    write(overview, options);
  } else {
    Listing listing(database, options.table, options.where, options.set);
    write(listing, options);
  }
}

const Command command(30, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const list = program.add_subcommand("list", "Prints what a model holds, as a table");
  list->add_option("MODEL", options->model, "The model")->required();
  CLI::Option* const kind = list->add_option(
      "KIND", options->table,
      "A kind of record, such as NodalForces or force, or LoadSets, ConstraintSets, "
      "DesignScenarios, Vertices; without it how many of each there are");
  list->add_option("--set", options->set, "Only the records in the set of that name")->needs(kind);
  list->add_option("--where", options->where, "Only rows that meet a condition on their columns")
      ->needs(kind);
  CLI::Option* const csv =
      list->add_flag("--csv", options->csv, "Comma-separated values with a header");
  list->add_flag("--json", options->json, "A JSON array of objects, one on each line")
      ->excludes(csv);
  add_example(list,
              "orv list plate.orvdb force --set \"Step 1, CLOAD\" --where \"Magnitude > 100\"");
  list->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
