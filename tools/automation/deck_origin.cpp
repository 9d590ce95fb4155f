#include "tools/automation/deck_origin.h"

#include "tools/text/file.h"
#include "tools/text/utf8.h"

namespace automation {
namespace {

std::vector<model::Step> steps_of(const deck::Deck& deck) {
  std::vector<model::Step> steps;
  for (const deck::Step& step : deck.steps) {
    steps.push_back({.number = static_cast<long>(steps.size()) + 1,
                     .procedure = step.procedure,
                     .line = deck.number_of_line(step.line)});
  }
  return steps;
}

std::vector<model::CoordinateSystem> systems_of(const deck::Deck& deck,
                                                const std::vector<content::Numbered>& transforms) {
  std::vector<model::CoordinateSystem> systems;
  for (const content::Numbered& numbered : transforms) {
    const deck::Transform& transform =
        deck.transforms[static_cast<std::size_t>(numbered.number - 1)];
    systems.push_back({.number = numbered.number,
                       .node_set = numbered.name,
                       .system = transform.system,
                       .line = numbered.line});
  }
  return systems;
}

}  // namespace

model::Origin origin_of(const deck::Deck& deck, const content::Source& source,
                        const std::string& path) {
  model::Origin origin{.source = source,
                       .path = path,
                       .steps = steps_of(deck),
                       .systems = systems_of(deck, source.transforms)};
  origin.source.deck = text::to_utf8(text::path_of(path).filename().wstring());
  return origin;
}

}  // namespace automation
