#pragma once

#include "tools/content/content.h"
#include "tools/model/database.h"

namespace model {

/// Everything that the model holds of nodes, sets and records. Raises, with a sentence, when a row
/// holds what it should not.
content::Content read_content(Database& database);

/// The keys that a model gave to the records of a content, table by table.
using Keys = std::vector<std::vector<content::Key>>;

/// Writes a content into a model, inside the transaction that the caller has begun. Vertices and
/// sets get the numbers that they have, which the model must not have yet; records with the number
/// 0 get new ones. Texts and numbers that a model cannot hold are refused with a sentence.
Keys write_content(Database& database, const content::Content& content);

}  // namespace model
