// orv csv-import: records of a kind from a spreadsheet.

#include <iostream>
#include <memory>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

#include "tools/content/shown_text.h"
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

constexpr std::size_t kMostFaults = 20;

[[noreturn]] void fail_on(const std::vector<RowFault>& faults, const std::string& path) {
  std::string text = "Nothing was imported.";
  for (const RowFault& fault : faults | std::views::take(kMostFaults)) {
    text += "\n  " + path + ", row " + std::to_string(fault.row) +
            (fault.column.empty() ? "" : ", column " + fault.column) + ": " + fault.reason;
  }
  text::fail(text::kInvalidArgument, text);
}

/// Rows behind a faulty one are read too, so that the user can correct several at once.
void take_rows(CsvReader& reader, RecordImport& records) {
  constexpr std::size_t kRowsAtOnce = 1000;
  std::vector<TextRow> rows;
  std::vector<RowFault> faults;
  for (bool is_more = true; is_more && faults.size() < kMostFaults;) {
    rows.resize(rows.size() + 1);
    is_more = reader.next(rows.back().cells);
    rows.back().number = reader.row();
    if (!is_more) rows.pop_back();
    if (is_more && rows.size() < kRowsAtOnce) continue;
    records.add(rows, faults);
    rows.clear();
  }
  if (!faults.empty()) fail_on(faults, reader.path());
}

/// A slip of the pen makes a set or a node, too; so these are told.
void tell(const RecordImport& records, const model::Kind& kind) {
  std::cout << records.added() << ' ' << kind.table << " added, " << records.changed()
            << " changed";
  if (records.unchanged() > 0) std::cout << ", " << records.unchanged() << " as they were";
  std::cout << '\n';
  if (records.made_vertices() > 0) {
    std::cout << "New in the model: " << records.made_vertices() << " Vertices\n";
  }
  for (const std::string& name : records.made_sets()) {
    std::cout << "New in the model, one of the " << kind.sets << ": " << content::shown_name(name)
              << '\n';
  }
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
  transaction.commit();
  tell(records, kind);
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
