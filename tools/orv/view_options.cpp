#include "tools/orv/view_options.h"

#include "tools/orv/arguments.h"

namespace orv {

void add_view_options(CLI::App& command, ViewOptions& arguments, const std::string& out) {
  command.add_option("MODEL", arguments.model, "The model")->required();
  command.add_option("-o,--output", arguments.out, out)->required();
  views::Options& options = arguments.view;
  command.add_option("--deck", options.deck, "The deck whose mesh is drawn with them");
  command.add_option("--kind", options.kinds,
                     "Draw only that kind of record; may be given repeatedly");
  command.add_option("--set", options.sets,
                     "Draw only the records in the set of that name; may be given repeatedly");
  command
      .add_option("--step", options.step,
                  "Draw only what is said in that step; 0 for the part before the first")
      ->check(whole_number());
  command.add_option("--view", options.view,
                     "Where to look from: iso, an axis with its sign such as +x, or three numbers "
                     "such as 1,-2,0.5");
  command.add_option("--scale", options.scale, "Size of arrows and signs, 1 unless told")
      ->check(positive_number());
  command.add_option("--labels", options.labels, "What stands beside each record")
      ->check(CLI::IsMember({"none", "values", "nodes", "names"}));
  command.add_option("--title", options.title, "The title above the picture");
}

}  // namespace orv
