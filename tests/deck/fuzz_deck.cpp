#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "tests/deck/fuzz.h"
#include "tools/deck/deck.h"
#include "tools/deck/export.h"
#include "tools/deck/import.h"

namespace {

/// What stands behind this byte is the file that the deck includes, whatever it is called.
constexpr char kFileEnd = '\x01';

void expect(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

deck::Deck read(const std::string& text, const std::string& included) {
  return deck::read("d.inp", [&](const std::string& path) {
    if (path == "d.inp") return text;
    if (included.empty()) throw deck::CannotOpen("There is no such file.");
    return included;
  });
}

/// The records that a deck gives after it was written are those that went into it.
void expect_same_records(const deck::Imported& before, const deck::Imported& after) {
  for (std::size_t i = 0; i < before.content.tables.size(); ++i) {
    const content::Table& a = before.content.tables[i];
    const content::Table& b = after.content.tables[i];
    expect(a.vertices == b.vertices, "other vertices");
    expect(a.values == b.values, "other values");
    expect(a.set_ids.size() == b.set_ids.size(), "other sets");
  }
}

/// The deck, and the file that it includes.
struct Input {
  explicit Input(const std::string& bytes) {
    const std::size_t end = bytes.find(kFileEnd);
    text = bytes.substr(0, end);
    if (end != std::string::npos) included = bytes.substr(end + 1);
  }

  std::string text;
  std::string included;
};

}  // namespace

void try_reading(const std::string& bytes) {
  const Input input(bytes);
  try {
    const deck::Deck deck = read(input.text, input.included);
    const deck::Imported imported = deck::import(deck);
    for (const content::Table& table : imported.content.tables) {
      expect(table.values.size() == table.size() * table.columns.size(), "a value is missing");
      for (const content::Key vertex : table.vertices) {
        expect(deck.index_of_node.contains(vertex), "a record is on no node");
      }
      for (const double value : table.values) expect(std::isfinite(value), "no finite number");
    }
  } catch (const deck::Error& error) {
    expect(error.what()[0] != '\0', "a deck was refused without a sentence");
  }
}

void try_round_trip(const std::string& bytes) {
  const auto [text, included] = Input(bytes);
  try {
    const deck::Deck deck = read(text, included);
    deck::Imported imported = deck::import(deck);
    const deck::Exported same = deck::write(deck, imported.content, imported.source);
    expect(same.refusals.empty() && same.text == text, "the unchanged deck was written otherwise");

    const deck::Exported rows =
        deck::write(deck, imported.content, imported.source, {.every_row = true});
    expect(rows.refusals.empty(), "a record of the deck was refused");
    if (rows.rounded.empty())
      expect_same_records(imported, deck::import(read(rows.text, included)));

    for (content::Table& table : imported.content.tables) {
      for (double& value : table.values) value = value == 1 ? 1 : value * 1.5;
      if (table.size() > 1) table.vertices[0] = table.vertices[1];
    }
    deck::write(deck, imported.content, imported.source);
    imported.content.set_tables.clear();
    deck::write(deck, imported.content, imported.source);
  } catch (const deck::Error&) {
    // A sentence is all that such a deck deserves.
  }
}
