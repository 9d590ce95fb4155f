// orv import: a deck becomes a model.

#include <orv_tools.h>

#include <iostream>
#include <memory>

#include "com/bstr.h"
#include "tools/model/kinds.h"
#include "tools/orv/command.h"
#include "tools/orv/model_file.h"
#include "tools/orv/objects.h"
#include "tools/orv/progress.h"
#include "tools/orv/remarks.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

struct Options {
  std::string deck;
  std::string model;
};

long count_of(model::Database& database, const std::string& table) {
  model::Rows rows = database.query("SELECT COUNT(*) FROM " + table);
  return rows.next() ? rows.integer(0) : 0;
}

void print_counts(model::Database& database) {
  std::cout << count_of(database, "Vertices") << " nodes";
  for (const model::Kind& kind : model::kinds_of(database)) {
    const long count = count_of(database, kind.table);
    if (count > 0) std::cout << ", " << count << ' ' << kind.table;
  }
  const auto counted = [&](const char* table, const std::string& what) {
    const long count = count_of(database, table);
    return std::to_string(count) + what + (count == 1 ? "" : "s");
  };
  std::cout << "; " << counted("LoadSets", " load set") << ", "
            << counted("ConstraintSets", " constraint set") << '\n';
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
