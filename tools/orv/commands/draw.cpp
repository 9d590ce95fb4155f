// orv draw: a picture of a model's loads and supports.

#include <iostream>
#include <memory>

#include "tools/content/shown_text.h"
#include "tools/orv/model_file.h"
#include "tools/orv/progress.h"
#include "tools/orv/view_options.h"
#include "tools/orv/written.h"

namespace orv {
namespace {

void run(const ViewOptions& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  std::vector<std::string> notes;
  {
    const Progress progress("Drawing " + options.out);
    notes = views::draw(database, options.view, options.out);
  }
  tell_written(options.out);
  for (const std::string& note : notes) std::cout << content::without_controls(note) << '\n';
}

const Command command(60, [](CLI::App& program) {
  const auto options = std::make_shared<ViewOptions>();
  CLI::App* const draw =
      program.add_subcommand("draw", "Draws a model's loads and supports as an SVG picture");
  add_view_options(*draw, *options, "The picture to write");
  add_example(draw, "orv draw plate.orvdb --deck plate.inp -o plate.svg");
  draw->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
