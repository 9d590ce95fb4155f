// orv report: a page about a model.

#include <memory>

#include "tools/orv/model_file.h"
#include "tools/orv/progress.h"
#include "tools/orv/view_options.h"
#include "tools/orv/written.h"

namespace orv {
namespace {

void run(const ViewOptions& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  {
    const Progress progress("Writing " + options.out);
    views::report(database, options.view, options.out);
  }
  tell_written(options.out);
}

const Command command(70, [](CLI::App& program) {
  const auto options = std::make_shared<ViewOptions>();
  CLI::App* const report = program.add_subcommand(
      "report", "Writes a page about a model: picture, findings, resultants, sets and records");
  add_view_options(*report, *options, "The page to write");
  add_example(report,
              "orv report plate.orvdb --deck plate.inp -o report.html\n"
              "The options choose what the picture shows; the rest is about the whole model.");
  report->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
