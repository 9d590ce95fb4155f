// orv export: a deck with the model's loads and supports in place of its own.

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
  std::string out;
  bool other_deck = false;
};

void run(const Options& options) {
  const auto deck = create<::Deck, IDeck>();
  const ModelFile model = ModelFile::open(options.model);
  {
    const Progress progress("Writing " + options.out);
    com::check(deck->Read(com::Bstr(text::to_wide(options.deck)).get()), deck);
    com::check(deck->Write(model.object(), com::Bstr(text::to_wide(options.out)).get(),
                           com::Variant::boolean(options.other_deck)),
               deck);
  }
  model::Database database = model.database();
  const std::string records = counts_of_records(database);
  tell_written(options.out, records.empty() ? "no records" : records);
  print_remarks("What should be known of " + options.out + ":", deck);
}

const Command command(20, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "export", "Writes the deck with the model's loads and supports in place of its own");
  command->add_option("DECK", options->deck, "The deck that the model was imported from")
      ->required();
  command->add_option("MODEL", options->model, "The model")->required();
  command->add_option("OUT", options->out, "The deck to write; not DECK itself")->required();
  command->add_flag("--other-deck", options->other_deck,
                    "DECK may be another than the model was imported from: cards are found by "
                    "step, keyword and parameters");
  add_example(command, "orv export plate.inp plate.orvdb stronger.inp");
  command->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
