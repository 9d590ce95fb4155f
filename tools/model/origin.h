#pragma once

#include <string>
#include <vector>

#include "tools/content/axes.h"
#include "tools/content/content.h"
#include "tools/model/database.h"

namespace model {

/// A step of a deck.
struct Step {
  long number = 0;        ///< from 1
  std::string procedure;  ///< keyword of the card that says what is solved: "STATIC"
  long line = 0;          ///< from 1
};

/// A coordinate system of some nodes of a deck.
struct CoordinateSystem {
  content::Key number = 0;  ///< CoordinateSystemID of records
  std::string node_set;
  content::System system;
  long line = 0;  ///< from 1
};

/// What a model remembers of the deck that it was imported from.
struct Origin {
  content::Source source;  ///< but for the transforms, which are `systems` here
  std::string path;
  std::vector<Step> steps;
  std::vector<CoordinateSystem> systems;
};

/// Writes the tables that tell where the model came from, inside the transaction that the caller
/// has begun.
void write_origin(Database& database, const Origin& origin);

/// Empty names and lists when the model was imported from no deck.
Origin read_origin(Database& database);

/// Raises kIllegalOperation, with a sentence that tells what is there, unless the model is empty.
void require_empty(Database& database);

}  // namespace model
