// orv history: the changes of a model that can be undone and redone.

#include <cstdio>
#include <iostream>
#include <memory>

#include "com/bstr.h"
#include "com/error.h"
#include "tools/orv/command.h"
#include "tools/orv/listing.h"
#include "tools/orv/model_file.h"
#include "tools/orv/output.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  bool json = false;
};

std::string text_of(DATE date) {
  SYSTEMTIME time{};
  VariantTimeToSystemTime(date, &time);
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", time.wYear, time.wMonth,
                time.wDay, time.wHour, time.wMinute, time.wSecond);
  return text;
}

Row row_of(const com::Ptr<IHistoryStep>& step) {
  long number = 0;
  com::Bstr name;
  com::Bstr changes;
  DATE made_at = 0;
  VARIANT_BOOL is_undone = VARIANT_FALSE;
  com::check(step->get_Number(&number), step);
  com::check(step->get_MadeAt(&made_at), step);
  com::check(step->get_Name(name.put()), step);
  com::check(step->get_Changes(changes.put()), step);
  com::check(step->get_IsUndone(&is_undone), step);
  return {number, text_of(made_at), text::to_utf8(name.view()),
          std::string(is_undone ? "undone" : ""), text::to_utf8(changes.view())};
}

Listing listing_of(const com::Ptr<IHistory>& history) {
  std::vector<Row> rows;
  long count = 0;
  com::check(history->get_Count(&count), history);
  for (long index = 0; index < count; ++index) {
    com::Ptr<IHistoryStep> step;
    com::check(history->Item(static_cast<int>(index), step.put()), history);
    rows.push_back(row_of(step));
  }
  return {{"Step", "MadeAt", "Name", "State", "Changes"}, std::move(rows)};
}

void run(const Options& options) {
  const ModelFile model = ModelFile::open(options.model);
  com::Ptr<IHistory> history;
  com::check(model.object()->get_History(history.put()), model.object());
  Listing listing = listing_of(history);
  if (options.json) return write_json(std::cout, listing);
  if (write_table(std::cout, listing) == 0) std::cout << "There is nothing to undo.\n";
  com::Bstr note;
  com::check(history->get_Note(note.put()), history);
  if (!note.view().empty()) std::cout << text::to_utf8(note.view()) << '\n';
}

const Command command(34, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const history = program.add_subcommand(
      "history", "Prints the changes of a model that can be undone, and those that were");
  history->add_option("MODEL", options->model, "The model")->required();
  history->add_flag("--json", options->json, "A JSON array of objects, one on each line");
  add_example(history, "orv history plate.orvdb");
  history->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
