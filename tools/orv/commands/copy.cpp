// orv copy: a model moves between a file and a server, or from one to another.

#include <iostream>
#include <memory>

#include "com/bstr.h"
#include "tools/orv/command.h"
#include "tools/orv/model_file.h"
#include "tools/orv/progress.h"
#include "tools/orv/written.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

struct Options {
  std::string source;
  std::string target;
};

void run(const Options& options) {
  const ModelFile source = ModelFile::open(options.source);
  long rows = 0;
  {
    const Progress progress("Copying the model");
    com::check(source.object()->CopyTo(com::Bstr(text::to_wide(options.target)).get(), &rows),
               source.object());
  }
  std::cout << counted(rows, "row") << " copied, read back and compared\n";
}

const Command command(37, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const copy = program.add_subcommand(
      "copy", "Copies a model whole, with its keys, between a file and a server");
  copy->add_option("MODEL", options->source, "The model")->required();
  copy->add_option("TARGET", options->target,
                   "Where to: a file, or odbc: and a connection string; a model without rows, made "
                   "if need be")
      ->required();
  add_example(copy,
              "orv copy plate.orvdb \"odbc:Driver={PostgreSQL Unicode};Server=team-server;"
              "Database=plate;Uid=owner\"");
  copy->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
