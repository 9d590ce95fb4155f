// orv draw: a picture of a model's loads and supports.

#include <iostream>
#include <map>
#include <memory>
#include <optional>

#include "tools/deck/deck.h"
#include "tools/geometry/view.h"
#include "tools/model/axes.h"
#include "tools/model/content.h"
#include "tools/model/kinds.h"
#include "tools/orv/command.h"
#include "tools/orv/model_file.h"
#include "tools/orv/progress.h"
#include "tools/picture/picture.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"

namespace orv {
namespace {

struct Options {
  std::string model;
  std::string deck;
  std::string out;
  std::string view;
  std::optional<int> step;
  std::vector<std::string> kinds;
  picture::Options picture;
};

mesh::Mesh mesh_of(const std::string& path) {
  if (path.empty()) return {};
  try {
    return std::move(deck::read(text::full_path(path)).mesh);
  } catch (const deck::Error& error) {
    text::fail(text::kCannotReadFile, error.what());
  }
}

void choose_view(const std::string& text, picture::Options& picture) {
  if (text.empty()) return;
  const auto direction = geometry::read_direction(text);
  if (!direction) {
    text::fail(text::kInvalidArgument, "\"" + text +
                                           "\" is no view. Pass iso, an axis with its sign such "
                                           "as +x or -z, or three numbers such as 1,-2,0.5.");
  }
  picture.from = {(*direction)[0], (*direction)[1], (*direction)[2]};
}

void run(const Options& options) {
  const ModelFile file = ModelFile::open(options.model);
  model::Database database = file.database();
  picture::Options picture = options.picture;
  choose_view(options.view, picture);
  const auto kinds = model::kinds_of(database);
  for (const std::string& kind : options.kinds) {
    picture.kinds.push_back(model::find_kind(kinds, kind).table);
  }
  const Progress progress("Drawing " + options.out);
  const content::Content content = model::read_content(database);
  const model::Origin origin = model::read_origin(database);
  picture.axes = model::axes_of(origin.systems, content.vertices);
  if (options.step) picture.filter = picture::in_step(origin.source, *options.step);
  const picture::Picture drawn = picture::draw(mesh_of(options.deck), content, picture);
  text::NewFile out(options.out);
  out.write(drawn.svg);
  out.complete();
  for (const std::string& note : drawn.notes) std::cout << note << '\n';
}

const Command command(60, [](CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const draw =
      program.add_subcommand("draw", "Draws a model's loads and supports as an SVG picture");
  draw->add_option("MODEL", options->model, "The model")->required();
  draw->add_option("-o,--output", options->out, "The picture to write")->required();
  draw->add_option("--deck", options->deck, "The deck whose mesh is drawn with them");
  draw->add_option("--kind", options->kinds, "Only that kind of record; may be given repeatedly");
  draw->add_option("--set", options->picture.sets,
                   "Only the records in the set of that name; may "
                   "be given repeatedly");
  draw->add_option("--step", options->step,
                   "Only what the deck says in that step; 0 for the part before the first");
  draw->add_option("--view", options->view,
                   "Where to look from: iso, an axis with its sign such as +x, or three numbers "
                   "such as 1,-2,0.5");
  draw->add_option("--scale", options->picture.scale, "Size of arrows and signs, 1 unless told")
      ->check(CLI::PositiveNumber);
  const std::map<std::string, picture::Labels> labels{{"none", picture::Labels::none},
                                                      {"values", picture::Labels::values},
                                                      {"nodes", picture::Labels::nodes},
                                                      {"names", picture::Labels::names}};
  draw->add_option("--labels", options->picture.labels, "What stands beside each record")
      ->transform(CLI::CheckedTransformer(labels));
  draw->add_option("--title", options->picture.title, "The title above the picture");
  add_example(draw, "orv draw plate.orvdb --deck plate.inp -o plate.svg");
  draw->callback([options] { run(*options); });
});

}  // namespace
}  // namespace orv
