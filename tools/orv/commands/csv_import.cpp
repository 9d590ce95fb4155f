// orv csv-import: records of a kind from a spreadsheet.

#include <iostream>
#include <memory>
#include <utility>

#include "tools/orv/command.h"
#include "tools/orv/csv_reader.h"
#include "tools/orv/model_file.h"
#include "tools/orv/new_record.h"
#include "tools/orv/progress.h"
#include "tools/orv/record_import.h"
#include "tools/text/failure.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  std::string kind;
  std::string file;
};

std::string sentence_of(const CsvReader& reader, const RowFault& fault) {
  return reader.path() + ", row " + std::to_string(reader.row()) +
         (fault.column.empty() ? "" : ", column " + fault.column) + ": " + fault.reason;
}

/// Rows behind a faulty one are read too, so that the user can correct several at once.
void take_rows(CsvReader& reader, RecordImport& records) {
  constexpr std::size_t kMostFaults = 20;
  std::vector<std::string> cells;
  std::vector<std::string> faults;
  while (faults.size() < kMostFaults && reader.next(cells)) {
    try {
      records.add(cells);
    } catch (const RowFault& fault) {
      faults.push_back(sentence_of(reader, fault));
    }
  }
  if (faults.empty()) return;
  std::string text = "Nothing was imported.";
  for (const std::string& fault : faults) text += "\n  " + fault;
  text::fail(text::kInvalidArgument, text);
}

void run(const Options& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  const auto kinds = model::kinds_of(database);
  const model::Kind& kind = model::find_kind(kinds, options.kind);
  CsvReader reader(options.file);
  std::vector<std::string> header;
  if (!reader.next(header)) {
    text::fail(text::kInvalidArgument,
               "The file \"" + options.file + "\" is empty. Its first row must name the columns.");
  }
  const Progress progress("Reading " + options.file);
  std::vector<double> new_record = values_of_new_record(file, kind);
  model::Transaction transaction(database);
  RecordImport records(database, kind, header, std::move(new_record));
  take_rows(reader, records);
  records.finish();
  transaction.commit();
  std::cout << records.added() << ' ' << kind.table << " added, " << records.changed()
            << " changed\n";
}

const Command command(50, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "csv-import",
      "Takes records of a kind over from comma-separated values, all of them or none");
  command->add_option("MODEL", options->model, "The model")->required();
  command->add_option("KIND", options->kind, "The kind of record, such as NodalForces or force")
      ->required();
  command
      ->add_option("FILE", options->file,
                   "The file. Its first row names the columns as csv-export writes them; VertexID "
                   "must be there. A row with a key changes that record, one without adds a record")
      ->required();
  add_example(command, "orv csv-import plate.orvdb force forces.csv");
  command->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
