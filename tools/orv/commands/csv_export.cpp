// orv csv-export: the records of a kind for a spreadsheet.

#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "tools/orv/command.h"
#include "tools/orv/listing.h"
#include "tools/orv/model_file.h"
#include "tools/orv/output.h"
#include "tools/orv/progress.h"
#include "tools/orv/terminal.h"
#include "tools/orv/written.h"
#include "tools/text/file.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  std::string kind;
  std::optional<std::string> out;
};

/// A stream that writes into a new file.
class FileBuffer : public std::stringbuf {
 public:
  explicit FileBuffer(text::NewFile& file) : file_(file) {}

 protected:
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    file_.write({bytes, static_cast<std::size_t>(count)});
    return count;
  }
  int_type overflow(int_type c) override {
    const char byte = traits_type::to_char_type(c);
    file_.write({&byte, 1});
    return c;
  }

 private:
  text::NewFile& file_;
};

std::size_t write_file(const std::string& path, Listing& listing) {
  const Progress progress("Writing " + path);
  text::NewFile file(path);
  FileBuffer buffer(file);
  std::ostream stream(&buffer);
  stream.exceptions(std::ios::badbit);  // the file's own sentence
  const std::size_t rows = write_csv(stream, listing);
  file.complete();
  return rows;
}

void run(const Options& options) {
  const ModelFile model = ModelFile::open(options.model);
  model::Database database = model.database();
  Listing listing(database, options.kind);
  if (!options.out) {
    std::optional<Progress> progress;
    if (!is_terminal(STD_OUTPUT_HANDLE)) progress.emplace("Writing " + options.kind);
    write_csv(std::cout, listing);
    return;
  }
  const std::size_t rows = write_file(*options.out, listing);
  tell_written(*options.out, counted(static_cast<long>(rows), "row"));
}

const Command command(40, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "csv-export", "Writes the records of a kind as comma-separated values, for a spreadsheet");
  command->add_option("MODEL", options->model, "The model")->required();
  command->add_option("KIND", options->kind, "The kind of record, such as NodalForces or force")
      ->required();
  command->add_option("OUT", options->out, "The file to write; without it standard output");
  add_example(command, "orv csv-export plate.orvdb force forces.csv");
  command->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
