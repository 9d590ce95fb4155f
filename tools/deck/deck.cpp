#include "tools/deck/deck.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tools/deck/lines.h"
#include "tools/deck/model_part.h"
#include "tools/deck/sha256.h"

namespace deck {
namespace {

std::filesystem::path path_of(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

std::optional<std::string> read_file(const std::filesystem::path& path) {
  std::error_code ignored;
  const auto size = std::filesystem::file_size(path, ignored);
  std::ifstream file(path, std::ios::binary);
  if (ignored || !file) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad()) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

void require_content(const Deck& deck) {
  if (!deck.mesh.node_ids.empty() || !deck.steps.empty()) return;
  throw Error(deck.files.front()->path +
              ": The deck has no node and no step, so that there is nothing to import. Is it a "
              "whole deck?");
}

/// A step that nothing ends is what is left of a file that was cut off.
void check_end(Deck& deck) {
  const auto end = std::find_if(deck.cards.rbegin(), deck.cards.rend(), [](const Card& card) {
    return card.is("STEP") || card.is("ENDSTEP");
  });
  if (end == deck.cards.rend()) {
    deck.remarks.push_back(deck.remark_at(deck.lines.size() - 1, "The deck ends without a step."));
  } else if (end->is("STEP")) {
    deck.remarks.push_back(deck.remark_at(deck.lines.size() - 1,
                                          "The deck ends within step " + std::to_string(end->step) +
                                              ", without *END STEP. Is the file cut off?"));
  }
}

}  // namespace

std::string Remark::text() const {
  return line == 0 ? file + ": " + reason : file + ", line " + std::to_string(line) + ": " + reason;
}

OpenFile files_beside(const std::string& deck_path) {
  return [folder = path_of(deck_path).parent_path(), deck_path](const std::string& path) {
    return path == deck_path ? read_file(path_of(path)) : read_file(folder / path_of(path));
  };
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
  for (const auto& file : files) digest.add(file->bytes);
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
