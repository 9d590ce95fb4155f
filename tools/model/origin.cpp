#include "tools/model/origin.h"

#include <ctime>

#include "tools/model/insertion.h"
#include "tools/model/kinds.h"
#include "tools/text/failure.h"

namespace model {
namespace {

/// An import wants an empty model, so that its deck is the only one.
constexpr long kDeck = 1;

std::string now_in_utc() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_s(&parts, &now);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
  return text;
}

void write_deck(Database& database, const Origin& origin) {
  Insertion rows(database, "Decks", "DeckID, Description, Path, Checksum, ImportedAt");
  rows.begin_row();
  rows.add(kDeck);
  rows.add(origin.source.deck);
  rows.add(origin.path);
  rows.add(origin.source.checksum);
  rows.add(now_in_utc());
  rows.finish();
}

void write_steps(Database& database, const std::vector<Step>& steps) {
  Insertion rows(database, "DeckSteps", "DeckID, Number, Procedure, Line");
  for (const Step& step : steps) {
    rows.begin_row();
    rows.add(kDeck);
    rows.add(step.number);
    rows.add(step.procedure);
    rows.add(step.line);
  }
  rows.finish();
}

void write_set_sources(Database& database, const std::vector<content::SetSource>& sets) {
  Insertion rows(database, "SetSources",
                 "DeckID, LoadSetID, ConstraintSetID, Step, Keyword, Parameters, Line");
  for (const content::SetSource& source : sets) {
    rows.begin_row();
    rows.add(kDeck);
    rows.add(source.table == "LoadSets" ? static_cast<long>(source.set) : 0L);
    rows.add(source.table == "ConstraintSets" ? static_cast<long>(source.set) : 0L);
    rows.add(static_cast<long>(source.step));
    rows.add(source.keyword);
    rows.add(source.parameters);
    rows.add(static_cast<long>(source.line));
  }
  rows.finish();
}

void write_amplitudes(Database& database, const std::vector<content::Numbered>& amplitudes) {
  Insertion rows(database, "MultiplierTables", "MultiplierTableID, Description, DeckID, Line");
  for (const content::Numbered& amplitude : amplitudes) {
    rows.begin_row();
    rows.add(static_cast<long>(amplitude.number));
    rows.add(amplitude.name);
    rows.add(kDeck);
    rows.add(static_cast<long>(amplitude.line));
  }
  rows.finish();
}

void write_systems(Database& database, const std::vector<CoordinateSystem>& systems) {
  Insertion rows(database, "CoordinateSystems",
                 "CoordinateSystemID, Description, DeckID, Line, Kind, NodeSet, "
                 "Ax, Ay, Az, Bx, By, Bz");
  for (const CoordinateSystem& system : systems) {
    rows.begin_row();
    rows.add(static_cast<long>(system.number));
    rows.add("TRANSFORM of " + system.node_set);
    rows.add(kDeck);
    rows.add(system.line);
    rows.add(system.system.is_cylindrical ? "C" : "R");
    rows.add(system.node_set);
    for (const double coordinate : system.system.a) rows.add(coordinate);
    for (const double coordinate : system.system.b) rows.add(coordinate);
  }
  rows.finish();
}

void read_steps(Database& database, Origin& origin) {
  Rows rows = database.query("SELECT Number, Procedure, Line FROM DeckSteps ORDER BY Number");
  while (rows.next()) {
    origin.steps.push_back(
        {.number = rows.integer(0), .procedure = rows.text(1), .line = rows.integer(2)});
  }
}

void read_set_sources(Database& database, Origin& origin) {
  Rows rows = database.query(
      "SELECT LoadSetID, ConstraintSetID, Step, Keyword, Parameters, Line "
      "FROM SetSources ORDER BY SetSourceID");
  while (rows.next()) {
    const bool is_load = rows.integer(0) != 0;
    origin.source.sets.push_back({.table = is_load ? "LoadSets" : "ConstraintSets",
                                  .set = rows.integer(is_load ? 0 : 1),
                                  .step = rows.integer(2),
                                  .keyword = rows.text(3),
                                  .parameters = rows.text(4),
                                  .line = rows.integer(5)});
  }
}

void read_amplitudes(Database& database, Origin& origin) {
  Rows rows = database.query(
      "SELECT MultiplierTableID, Description, Line FROM MultiplierTables "
      "ORDER BY MultiplierTableID");
  while (rows.next()) {
    origin.source.amplitudes.push_back(
        {.number = rows.integer(0), .name = rows.text(1), .line = rows.integer(2)});
  }
}

void read_systems(Database& database, Origin& origin) {
  Rows rows = database.query(
      "SELECT CoordinateSystemID, NodeSet, Kind, Line, Ax, Ay, Az, Bx, By, Bz "
      "FROM CoordinateSystems ORDER BY CoordinateSystemID");
  while (rows.next()) {
    origin.systems.push_back({.number = rows.integer(0),
                              .node_set = rows.text(1),
                              .system = {.is_cylindrical = rows.text(2) == "C",
                                         .a = {rows.real(4), rows.real(5), rows.real(6)},
                                         .b = {rows.real(7), rows.real(8), rows.real(9)}},
                              .line = rows.integer(3)});
    origin.source.transforms.push_back({.number = rows.integer(0), .name = rows.text(1)});
  }
}

}  // namespace

void write_origin(Database& database, const Origin& origin) {
  write_deck(database, origin);
  write_steps(database, origin.steps);
  write_set_sources(database, origin.source.sets);
  write_amplitudes(database, origin.source.amplitudes);
  write_systems(database, origin.systems);
}

Origin read_origin(Database& database) {
  Origin origin;
  Rows decks = database.query("SELECT Description, Path, Checksum FROM Decks ORDER BY DeckID");
  if (!decks.next()) return origin;
  origin.source.deck = decks.text(0);
  origin.path = decks.text(1);
  origin.source.checksum = decks.text(2);
  read_steps(database, origin);
  read_set_sources(database, origin);
  read_amplitudes(database, origin);
  read_systems(database, origin);
  return origin;
}

void require_empty(Database& database) {
  const std::string deck = read_origin(database).source.deck;
  if (!deck.empty()) {
    text::fail(text::kIllegalOperation,
               "The deck cannot be imported: the model comes from the deck \"" + deck +
                   "\" already. Import into a new model.");
  }
  std::vector<std::string> tables{"Vertices"};
  tables.insert(tables.end(), std::begin(kSetTables), std::end(kSetTables));
  for (const Kind& kind : kinds_of(database)) tables.push_back(kind.table);
  std::string found;
  for (const std::string& table : tables) {
    Rows rows = database.query("SELECT COUNT(*) FROM " + table);
    if (!rows.next() || rows.integer(0) == 0) continue;
    found += (found.empty() ? "" : ", ") + std::to_string(rows.integer(0)) + " " + table;
  }
  if (found.empty()) return;
  text::fail(text::kIllegalOperation, "The deck cannot be imported: the model holds " + found +
                                          ", whose numbers the deck's would meet. Import into a "
                                          "new model, or delete them first.");
}

}  // namespace model
