// orv import: a deck becomes a model.

#include <orv_tools.h>

#include <iostream>
#include <memory>

#include "com/bstr.h"
#include "tools/orv/command.h"
#include "tools/orv/model_file.h"
#include "tools/orv/objects.h"
#include "tools/orv/progress.h"
#include "tools/orv/remarks.h"
#include "tools/orv/written.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

struct Options {
  std::string deck;
  std::string model;
};

void print_counts(model::Database& database) {
  const std::string records = counts_of_records(database);
  std::cout << counted(count_of(database, "Vertices"), "node") << (records.empty() ? "" : ", ")
            << records << "; " << counted(count_of(database, "LoadSets"), "load set") << ", "
            << counted(count_of(database, "ConstraintSets"), "constraint set") << '\n';
}

void run(const Options& options) {
  const auto deck = create<::Deck, IDeck>();
  {
    const Progress progress("Reading " + options.deck);
    com::check(deck->Read(com::Bstr(text::to_wide(options.deck)).get()), deck);
  }
  ModelFile model = ModelFile::open_or_make(options.model);
  {
    const Progress progress("Copying it to " + options.model);
    com::check(deck->CopyTo(model.object()), deck);
  }
  model.keep();
  model::Database database = model.database();
  print_counts(database);
  print_remarks("What stays in the deck, or should be known:", deck);
}

const Command command(10, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const import = program.add_subcommand(
      "import", "Makes a model of a deck: its nodes, sets, loads and supports");
  import->add_option("DECK", options->deck, "The input deck of the solver")->required();
  import->add_option("MODEL", options->model, "The model, which must be empty; made if need be")
      ->required();
  add_example(import, "orv import plate.inp plate.orvdb");
  import->callback([options] { run(*options);
});
});

}  // namespace
}  // namespace orv
