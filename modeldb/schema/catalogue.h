#pragma once

#include <string_view>
#include <vector>

#include "modeldb/schema/kind.h"
#include "modeldb/schema/table.h"

namespace modeldb {

/// Every kind of object that has a table in the model.
class Catalogue {
 public:
  /// The catalogue of this process, read from the registered server at the first call that
  /// succeeds. Safe for concurrent use. Raises, with a sentence, when the server is not usable.
  static const Catalogue& instance();

  /// The tables of the model's own kinds first, then those of the server's.
  [[nodiscard]] const std::vector<Table>& tables() const { return tables_; }

  /// The table of this name; null when there is none. Letter case counts for nothing.
  [[nodiscard]] const Table* find(std::wstring_view name) const;

 private:
  Catalogue();

  std::vector<Table> tables_;
};

}  // namespace modeldb
