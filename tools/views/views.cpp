#include "tools/views/views.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "tools/checks/check.h"
#include "tools/checks/resultants.h"
#include "tools/deck/deck.h"
#include "tools/geometry/view.h"
#include "tools/model/kinds.h"
#include "tools/model/subject.h"
#include "tools/picture/picture.h"
#include "tools/report/report.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"

namespace views {
namespace {

mesh::Mesh mesh_of(const std::string& path) {
  if (path.empty()) return {};
  try {
    return std::move(deck::read(path).mesh);
  } catch (const deck::Error& error) {
    text::fail(text::kCannotReadFile, error.what());
  }
}

std::optional<std::array<double, 3>> direction_of(const std::string& view) {
  if (view.empty()) return std::nullopt;
  const auto direction = geometry::read_direction(view);
  if (!direction) {
    text::fail(text::kInvalidArgument, "\"" + view +
                                           "\" is no view. Pass iso, an axis with its sign such "
                                           "as +x or -z, or three numbers such as 1,-2,0.5.");
  }
  return std::array{direction->x(), direction->y(), direction->z()};
}

picture::Labels labels_of(const std::string& text) {
  constexpr std::pair<const char*, picture::Labels> kLabels[] = {
      {"none", picture::Labels::none},
      {"values", picture::Labels::values},
      {"nodes", picture::Labels::nodes},
      {"names", picture::Labels::names}};
  for (const auto& [name, labels] : kLabels) {
    if (text == name) return labels;
  }
  text::fail(text::kInvalidArgument, "\"" + text +
                                         "\" is no sort of labels. Pass none, values, nodes or "
                                         "names.");
}

void require_sets(const content::Content& content, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const bool is_there =
        std::ranges::any_of(content.set_tables, [&](const content::SetTable& table) {
          return std::ranges::find(table.sets, name, &content::Set::name) != table.sets.end();
        });
    if (is_there) continue;
    text::fail(text::kInvalidArgument, "The model has no set \"" + name +
                                           "\". Pass the name of one as the model has it; orv "
                                           "list shows them.");
  }
}

picture::Options picture_of(model::Database& database, const checks::Subject& subject,
                            const Options& options) {
  picture::Options picture;
  picture.title = options.title;
  picture.from = direction_of(options.view);
  picture.scale = options.scale;
  picture.labels = labels_of(options.labels);
  picture.sets = options.sets;
  picture.axes = subject.axes;
  require_sets(subject.content, options.sets);
  const auto kinds = model::kinds_of(database);
  for (const std::string& kind : options.kinds) {
    picture.kinds.push_back(model::find_kind(kinds, kind).table);
  }
  if (options.step) {
    model::require_step(subject, *options.step);
    picture.filter = picture::in_step(subject.source, *options.step);
  }
  return picture;
}

void write(const Options& options, const std::string& path, const std::string& text) {
  if (!options.deck.empty() &&
      text::is_same_file(text::path_of(options.deck), text::path_of(path))) {
    text::fail(text::kInvalidArgument, "\"" + path +
                                           "\" is the deck itself, which is not written over. "
                                           "Choose another name.");
  }
  text::NewFile out(path);
  out.write(text);
  out.complete();
}

}  // namespace

void require_valid(const Options& options) {
  direction_of(options.view);
  labels_of(options.labels);
  if (!(options.scale > 0) || !std::isfinite(options.scale)) {
    text::fail(text::kInvalidArgument,
               "The scale must be a number above 0; 1 is the usual size of arrows and signs.");
  }
}

std::vector<std::string> draw(model::Database& database, const Options& options,
                              const std::string& path) {
  require_valid(options);
  const model::CheckedModel model(database);
  const checks::Subject& subject = model.subject();
  picture::Picture drawn =
      picture::draw(mesh_of(options.deck), subject.content, picture_of(database, subject, options));
  write(options, path, drawn.svg);
  return std::move(drawn.notes);
}

void report(model::Database& database, const Options& options, const std::string& path) {
  require_valid(options);
  const model::CheckedModel model(database);
  const checks::Subject& subject = model.subject();
  const std::string& deck = subject.source.deck;
  report::Options page;
  page.title = options.title;
  page.picture = picture_of(database, subject, options);
  page.findings = checks::check(subject);
  page.resultants = checks::resultants_of(subject);
  if (page.title.empty()) page.title = deck.empty() ? "Loads and supports" : deck;
  if (!deck.empty()) page.subtitle = "Imported from the deck " + deck + ".";
  write(options, path, report::html(mesh_of(options.deck), subject.content, page));
}

}  // namespace views
