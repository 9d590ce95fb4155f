#pragma once

#include <string>
#include <vector>

#include "tools/content/content.h"

namespace tests {

/// A table of a kind with its columns and no records.
content::Table table(const std::string& name);

/// Adds a record with the next key.
void add(content::Table& table, content::Key vertex, const std::vector<double>& values,
         const std::vector<content::Key>& sets = {});

/// One or more records of each of the eighteen kinds, on the nodes 1 to 8 in turn.
content::Content all_kinds();

}  // namespace tests
