#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace content {

/// Keys of rows and numbers of nodes, as the model database has them.
using Key = std::int32_t;

/// A load set, constraint set or design scenario.
struct Set {
  Key id = 0;  ///< 0: the model has no row for it yet
  std::string name;
};

/// The sets of one table: "LoadSets", "ConstraintSets" or "DesignScenarios".
struct SetTable {
  std::string name;
  std::vector<Set> sets;
};

/// The records of one kind, column by column. All vectors that are "one for each record" have the
/// same length; records stand in the order of their keys.
struct Table {
  std::string name;                  ///< "NodalForces"
  std::string sets;                  ///< name of the table of its sets, "LoadSets"
  std::vector<std::string> columns;  ///< the kind's own, without key, Description and VertexID

  std::vector<Key> ids;                   ///< one for each record; 0: not saved yet
  std::vector<std::string> descriptions;  ///< one for each record, or none at all: all are empty
  std::vector<Key> vertices;              ///< one for each record: VertexID
  std::vector<double> values;             ///< columns.size() for each record, in their order
  std::vector<std::vector<Key>> set_ids;  ///< one for each record: the sets that it is in

  [[nodiscard]] std::size_t size() const { return vertices.size(); }
};

/// Nodes with their coordinates, in the model's unit of length.
struct Vertices {
  std::vector<Key> ids;
  std::vector<std::array<double, 3>> coordinates;
};

/// The card of a deck from which the records of a set came.
struct SetSource {
  std::string table;  ///< of the set: "LoadSets" or "ConstraintSets"
  Key set = 0;
  int step = 0;            ///< 0: the model part, before the first step
  std::string keyword;     ///< in capitals without blanks: "CLOAD"
  std::string parameters;  ///< "OP=NEW, AMPLITUDE=A1"
  std::int32_t line = 0;   ///< of the first such card, from 1
};

/// What a number in the records stands for.
struct Numbered {
  Key number = 0;
  std::string name;
  std::int32_t line = 0;  ///< of its card, from 1
};

/// Where the records of a model came from.
struct Source {
  std::string deck;      ///< name of the deck; empty: the model does not come from a deck
  std::string checksum;  ///< SHA-256 of its bytes, hexadecimal
  std::vector<SetSource> sets;
  std::vector<Numbered> amplitudes;  ///< by MultiplierTableID; from 2, as 1 is that of new records
  std::vector<Numbered> transforms;  ///< by CoordinateSystemID; from 1, named by their node sets
};

/// What a model holds of nodal loads and constraints, apart from the database it lies in.
struct Content {
  Vertices vertices;
  std::vector<SetTable> set_tables;
  std::vector<Table> tables;
};

}  // namespace content
