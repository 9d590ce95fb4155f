#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "tools/deck/deck.h"
#include "tools/deck/export.h"
#include "tools/deck/import.h"

/// Decks out of texts, and short views of what they mean.
namespace support {

using Files = std::map<std::string, std::string>;

/// A deck, "d.inp", and the files that it includes.
inline deck::Deck read(const std::string& text, const Files& included = {}) {
  return deck::read("d.inp", [&](const std::string& path) {
    if (path == "d.inp") return text;
    const auto found = included.find(path);
    if (found == included.end()) throw deck::CannotOpen("There is no file " + path + ".");
    return found->second;
  });
}

/// Nodes 1 to 8 of a cube in the set ALL, and what else a model part may need.
inline const std::string kModel =
    "*NODE, NSET=ALL\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
    "*NSET,NSET=TOP\n5,6\n*AMPLITUDE,NAME=A1\n0,0,1,1\n*AMPLITUDE,NAME=A2\n0,0,1,2\n";

/// A deck of the model, with cards in its one step.
inline std::string in_step(const std::string& cards) {
  return kModel + "*STEP\n*STATIC\n" + cards + "*END STEP\n";
}

inline content::Table& table(deck::Imported& imported, const std::string& name) {
  return *std::find_if(imported.content.tables.begin(), imported.content.tables.end(),
                       [&](const content::Table& each) { return each.name == name; });
}

/// "5: 1 -2 0 1 0 0; 6: …": the vertices and values of a table.
inline std::string records(deck::Imported imported, const std::string& name) {
  const content::Table& each = table(imported, name);
  std::string text;
  for (std::size_t i = 0; i < each.size(); ++i) {
    text += (i == 0 ? "" : "; ") + std::to_string(each.vertices[i]) + ":";
    for (std::size_t j = 0; j < each.columns.size(); ++j) {
      char number[32];
      std::snprintf(number, sizeof number, " %g", each.values[i * each.columns.size() + j]);
      text += number;
    }
  }
  return text;
}

inline std::vector<std::string> remarks(const deck::Imported& imported) {
  std::vector<std::string> texts;
  for (const deck::Remark& remark : imported.remarks) texts.push_back(remark.text());
  return texts;
}

/// What a deck gives to a model that had nothing before: its rows have keys now.
inline deck::Imported saved(const deck::Deck& deck) {
  deck::Imported imported = deck::import(deck);
  for (content::Table& each : imported.content.tables) {
    for (std::size_t i = 0; i < each.size(); ++i) each.ids[i] = static_cast<content::Key>(i + 1);
  }
  return imported;
}

inline void erase(content::Table& table, std::size_t record) {
  const auto at = static_cast<std::ptrdiff_t>(record);
  const auto width = static_cast<std::ptrdiff_t>(table.columns.size());
  table.ids.erase(table.ids.begin() + at);
  table.vertices.erase(table.vertices.begin() + at);
  table.set_ids.erase(table.set_ids.begin() + at);
  table.values.erase(table.values.begin() + at * width, table.values.begin() + (at + 1) * width);
}

/// A new record at the end of a table.
inline void append(content::Table& table, content::Key vertex, std::vector<double> values,
                   std::vector<content::Key> sets) {
  table.ids.push_back(static_cast<content::Key>(table.size() + 1));
  table.vertices.push_back(vertex);
  table.values.insert(table.values.end(), values.begin(), values.end());
  table.set_ids.push_back(std::move(sets));
}

/// A new set; its number.
inline content::Key append_set(deck::Imported& imported, const std::string& table,
                               const std::string& name) {
  auto& tables = imported.content.set_tables;
  auto& sets = tables[tables[0].name == table ? 0 : 1].sets;
  sets.push_back({static_cast<content::Key>(sets.size() + 1), name});
  return sets.back().id;
}

/// The deck as it is written; refusals are a failure of the test.
inline std::string written(const deck::Deck& deck, const deck::Imported& imported,
                           const deck::ExportOptions& options = {}) {
  const deck::Exported exported = deck::write(deck, imported.content, imported.source, options);
  for (const std::string& refusal : exported.refusals) ADD_FAILURE() << refusal;
  return exported.text;
}

}  // namespace support
