#include "tools/views/views.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "tools/checks/check.h"
#include "tools/checks/resultants.h"
#include "tools/checks/schedule.h"
#include "tools/deck/deck.h"
#include "tools/deck/systems.h"
#include "tools/geometry/view.h"
#include "tools/model/kinds.h"
#include "tools/model/subject.h"
#include "tools/picture/picture.h"
#include "tools/report/report.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"

namespace views {
namespace {

/// The deck whose mesh is shown; an empty one without a path.
deck::Deck deck_at(const std::string& path) {
  if (path.empty()) return {};
  try {
    return deck::read(path);
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

/// What tells the deck of a picture from the one that the model came from, as a sentence; empty,
/// if they have the same nodes.
std::string note_of_deck(const deck::Deck& deck, const checks::Subject& subject,
                         const Options& options) {
  const content::Vertices& vertices = subject.content.vertices;
  if (options.deck.empty() || subject.source.checksum.empty()) return "";
  if (deck.checksum() == subject.source.checksum) return "";
  std::size_t elsewhere = 0;
  for (std::size_t i = 0; i < vertices.ids.size(); ++i) {
    const std::uint32_t place = deck.index_of_node.of(vertices.ids[i]);
    const bool is_there = place != mesh::NodeIndex::none;
    if (!is_there || deck.mesh.coordinates[place] != vertices.coordinates[i]) ++elsewhere;
  }
  // Such as the deck that was exported from the model: its mesh is the model's.
  if (elsewhere == 0) return "";
  return "The mesh is that of \"" + options.deck + "\". It is not, or no more, the deck \"" +
         subject.source.deck +
         "\" from which the model was imported: " + std::to_string(elsewhere) + " of the model's " +
         std::to_string(vertices.ids.size()) + " nodes lie elsewhere in it, or are not there.";
}

/// Nodes with axes of their own are known from the deck alone.
std::string note_of_axes(const model::CheckedModel& model, const Options& options) {
  if (!options.deck.empty() || !model.has_systems()) return "";
  return "The deck has coordinate systems (*TRANSFORM). Without it supports and displacements are "
         "drawn along the global axes; name it, with --deck or as Deck, to see them along those of "
         "their nodes.";
}

picture::Filter in_step(const checks::Subject& subject, int step) {
  const checks::Schedule schedule = checks::schedule_of(subject);
  std::map<const content::Table*, std::vector<bool>> belongs;
  for (const content::Table& table : subject.content.tables) {
    belongs[&table] = checks::records_in_step(schedule, table, step);
  }
  return [belongs = std::move(belongs)](const content::Table& table, std::size_t record) {
    return belongs.at(&table)[record];
  };
}

picture::Options picture_of(model::Database& database, const model::CheckedModel& model,
                            const deck::Deck& deck, const Options& options) {
  const checks::Subject& subject = model.subject();
  picture::Options picture;
  picture.title = options.title;
  picture.from = direction_of(options.view);
  picture.scale = options.scale;
  picture.labels = labels_of(options.labels);
  picture.sets = options.sets;
  picture.axes = subject.axes;
  picture.node_axes = deck::node_axes_of(deck);
  for (std::string note : {note_of_deck(deck, subject, options), note_of_axes(model, options)}) {
    if (!note.empty()) picture.notes.push_back(std::move(note));
  }
  require_sets(subject.content, options.sets);
  const auto kinds = model::kinds_of(database);
  for (const std::string& kind : options.kinds) {
    picture.kinds.push_back(model::find_kind(kinds, kind).table);
  }
  if (options.step) {
    model::require_step(subject, *options.step);
    picture.filter = in_step(subject, *options.step);
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
  const deck::Deck deck = deck_at(options.deck);
  picture::Picture drawn =
      picture::draw(deck.mesh, model.subject().content, picture_of(database, model, deck, options));
  write(options, path, drawn.svg);
  return std::move(drawn.notes);
}

void report(model::Database& database, const Options& options, const std::string& path) {
  require_valid(options);
  const model::CheckedModel model(database);
  const checks::Subject& subject = model.subject();
  const deck::Deck deck = deck_at(options.deck);
  const std::string& source = subject.source.deck;
  report::Options page;
  page.title = options.title;
  page.picture = picture_of(database, model, deck, options);
  page.findings = checks::check(subject);
  page.resultants = checks::resultants_of(subject);
  if (page.title.empty()) page.title = source.empty() ? "Loads and supports" : source;
  if (!source.empty()) page.subtitle = "Imported from the deck " + source + ".";
  write(options, path, report::html(deck.mesh, subject.content, page));
}

}  // namespace views
