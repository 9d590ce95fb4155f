#pragma once

#include "tools/content/content.h"
#include "tools/model/database.h"

namespace model {

/// Everything that the model holds of nodes, sets and records. Raises, with a sentence, when a row
/// holds what it should not.
content::Content read_content(Database& database);

/// Writes the content of a deck into a model, inside the transaction that the caller has begun.
/// Vertices and sets get the numbers that they have, which the model must not have yet. Records are
/// new, without a description, and in one set each; they get their keys in their order.
void write_content(Database& database, const content::Content& content);

}  // namespace model
