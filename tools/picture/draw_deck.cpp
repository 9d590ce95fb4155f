// Draws a deck, for looking at pictures while working on them:
//
//   draw_deck DECK PICTURE.svg [FROM]
//
// Only the host's own build has it; users have orv.

#include <cstdio>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

#include "tools/deck/import.h"
#include "tools/deck/systems.h"
#include "tools/geometry/view.h"
#include "tools/picture/picture.h"

namespace {

int draw(const std::vector<std::string>& arguments) {
  if (arguments.size() < 2 || arguments.size() > 3) {
    std::fputs("draw_deck DECK PICTURE.svg [FROM]\n", stderr);
    return 2;
  }
  const deck::Deck deck = deck::read(arguments[0]);
  picture::Options options;
  options.title = arguments[0].substr(arguments[0].find_last_of('/') + 1);
  options.axes = deck::axes_of(deck);
  options.node_axes = deck::node_axes_of(deck);
  if (arguments.size() == 3) {
    const auto from = geometry::read_direction(arguments[2]);
    if (!from) {
      std::fprintf(stderr, "draw_deck: '%s' is no direction\n", arguments[2].c_str());
      return 2;
    }
    options.from = {from->x(), from->y(), from->z()};
  }
  const auto picture = picture::draw(deck.mesh, deck::import(deck).content, options);
  std::ofstream file(arguments[1], std::ios::binary);
  file << picture.svg;
  file.close();
  if (!file) std::fprintf(stderr, "draw_deck: cannot write '%s'\n", arguments[1].c_str());
  return file ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return draw({arguments + 1, arguments + count});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "draw_deck: %s\n", error.what());
    return 1;
  }
}
