#include "tools/deck/deck.h"

#include <algorithm>
#include <iterator>

#include "tools/deck/files.h"
#include "tools/deck/lines.h"
#include "tools/deck/model_part.h"
#include "tools/deck/sha256.h"

namespace deck {
namespace {

void require_content(const Deck& deck) {
  if (!deck.mesh.node_ids.empty() || !deck.steps.empty()) return;
  throw Error(deck.files.front()->path +
              ": The deck has no node and no step, so that there is nothing to import. Is it a "
              "whole deck?");
}

/// The solver ends such a deck as done without having computed the step: its file was cut off. With
/// nothing behind *STEP there is nothing to lose, and decks end so.
void check_end(Deck& deck) {
  const auto end = std::find_if(deck.cards.rbegin(), deck.cards.rend(), [](const Card& card) {
    return card.is("STEP") || card.is("ENDSTEP");
  });
  const std::size_t last_line = deck.lines.size() - 1;
  if (end == deck.cards.rend()) {
    deck.remarks.push_back(deck.remark_at(last_line, "The deck ends without a step."));
  } else if (end->is("STEP")) {
    const std::string step = std::to_string(end->step);
    if (end == deck.cards.rbegin()) {
      deck.remarks.push_back(
          deck.remark_at(last_line, "Step " + step + " has neither a card nor *END STEP."));
      return;
    }
    throw Error(deck.remark_at(last_line, "The deck ends within step " + step +
                                              ", without *END STEP, and the solver would not "
                                              "compute the step. Is the file cut off?")
                    .text());
  }
}

}  // namespace

std::string Remark::text() const {
  return line == 0 ? file + ": " + reason : file + ", line " + std::to_string(line) + ": " + reason;
}

const std::string* Card::find(std::string_view name) const {
  const auto found =
      std::find_if(parameters.begin(), parameters.end(),
                   [name](const Parameter& parameter) { return parameter.name == name; });
  return found == parameters.end() ? nullptr : &found->value;
}

bool Card::is(std::string_view keyword_start) const { return keyword.starts_with(keyword_start); }

std::string Deck::checksum() const {
  Sha256 digest;
  for (const auto& file : files) digest.add(file->bytes());
  return digest.finish();
}

content::Key Deck::number_of_amplitude(std::string_view name) const {
  const auto found = std::ranges::find(amplitudes, name, &Amplitude::name);
  return found == amplitudes.end() ? 0 : static_cast<content::Key>(found - amplitudes.begin()) + 2;
}

Remark Deck::remark_at(std::size_t line, std::string reason) const {
  return {files[lines[line].file]->path, lines[line].number, std::move(reason)};
}

Deck read(const std::string& path, const OpenFile& open) {
  Deck deck;
  read_lines(deck, path, open);
  read_model_part(deck);
  require_content(deck);
  if (deck.mesh.node_ids.empty())
    deck.remarks.push_back(deck.remark_at(0, "The deck has no node."));
  check_end(deck);
  return deck;
}

Deck read(const std::string& path) { return read(path, files_beside(path)); }

}  // namespace deck
