#include "tools/automation/deck_origin.h"

#include "tools/deck/fields.h"
#include "tools/text/file.h"
#include "tools/text/utf8.h"

namespace automation {
namespace {

long line_number(const deck::Deck& deck, std::size_t line) {
  return static_cast<long>(deck.lines[line].number);
}

/// A card that stands for a procedure of its own; what else follows *STEP says how it is solved, or
/// is a load.
bool may_be_procedure(const deck::Card& card) {
  constexpr std::string_view kOthers[] = {
      "STEP",        "ENDSTEP", "CONTROLS", "TIMEPOINTS",   "NSET",    "ELSET",       "AMPLITUDE",
      "BOUNDARY",    "CLOAD",   "CFLUX",    "DLOAD",        "DFLUX",   "FILM",        "RADIATE",
      "TEMPERATURE", "NODE",    "EL",       "SECTIONPRINT", "CONTACT", "MODELCHANGE", "CHANGE"};
  for (const std::string_view other : kOthers) {
    if (card.is(other)) return false;
  }
  return true;
}

std::vector<model::Step> steps_of(const deck::Deck& deck) {
  std::vector<model::Step> steps;
  for (const deck::Card& card : deck.cards) {
    if (!card.within_step) continue;
    if (steps.empty() || steps.back().number != card.step) {
      steps.push_back(
          {.number = card.step, .procedure = {}, .line = line_number(deck, card.first)});
    }
    std::string& procedure = steps.back().procedure;
    if (procedure.empty() && may_be_procedure(card)) procedure = card.keyword;
  }
  return steps;
}

/// The six numbers of the first data line behind a keyword line.
void read_points(const deck::Deck& deck, std::size_t keyword_line,
                 model::CoordinateSystem& system) {
  std::size_t line = keyword_line + 1;
  while (line < deck.lines.size() && !deck.lines[line].is_data) ++line;
  if (line == deck.lines.size()) return;
  deck::Fields fields;
  fields.split(deck.lines[line].text());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    deck::read_number(fields[axis], system.a[axis]);
    deck::read_number(fields[axis + 3], system.b[axis]);
  }
}

std::vector<model::CoordinateSystem> systems_of(const deck::Deck& deck,
                                                const std::vector<content::Numbered>& transforms) {
  std::vector<model::CoordinateSystem> systems;
  for (const content::Numbered& numbered : transforms) {
    const deck::Transform& transform =
        deck.transforms[static_cast<std::size_t>(numbered.number - 1)];
    systems.push_back({.number = numbered.number,
                       .node_set = numbered.name,
                       .is_cylindrical = transform.is_cylindrical,
                       .line = line_number(deck, transform.line)});
    read_points(deck, transform.line, systems.back());
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
