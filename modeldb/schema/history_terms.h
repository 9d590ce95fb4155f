#pragma once

#include "modeldb/history/history.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// How the history calls the rows of each kind, and what they refer to: vertices and sets.
HistoryTerms history_terms(const Catalogue& catalogue);

}  // namespace modeldb
