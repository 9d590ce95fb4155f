#pragma once

#include <cstdio>
#include <string>
#include <utility>

#include "tests/deck/support.h"
#include "tools/checks/subject.h"
#include "tools/deck/systems.h"

namespace support {

/// A model that was imported from a deck.
class Model {
 public:
  /// The cards stand behind the nodes of kModel.
  explicit Model(const std::string& cards) : deck_(read(kModel + cards)), imported_(saved(deck_)) {}

  deck::Imported& imported() { return imported_; }
  content::Table& table(const std::string& name) { return support::table(imported_, name); }
  /// A table of a kind that decks do not have, in front of the others.
  content::Table& add_table(const std::string& name, const std::string& sets,
                            std::vector<std::string> columns) {
    content::Table table;
    table.name = name;
    table.sets = sets;
    table.columns = std::move(columns);
    return *imported_.content.tables.insert(imported_.content.tables.begin(), table);
  }
  [[nodiscard]] checks::Subject subject() const {
    return {imported_.content, imported_.source, deck_.step_count(), deck::axes_of(deck_)};
  }

 private:
  deck::Deck deck_;
  deck::Imported imported_;
};

inline std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

}  // namespace support
