#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/model/database.h"

namespace model {

/// A kind of record, as the server's type library and the model's table tell.
struct Kind {
  std::string object;                ///< "NodalForce"
  std::string table;                 ///< "NodalForces"
  std::string sets;                  ///< table of its sets: "LoadSets"
  std::vector<std::string> columns;  ///< without key, Description and VertexID
  std::vector<bool> is_whole;        ///< one for each column: it holds whole numbers

  [[nodiscard]] std::string key() const { return object + "ID"; }
  /// The table that links records to sets.
  [[nodiscard]] std::string link_table() const { return object + sets; }
};

/// All kinds of the registered server, in the order of its type library.
std::vector<Kind> kinds_of(Database& database);

/// The kind of that table or object, such as "NodalForces" or "NodalForce"; the Nodal may be left
/// out, and letter case counts for nothing. Raises, with a sentence, when there is none.
const Kind& find_kind(const std::vector<Kind>& kinds, std::string_view name);

/// The tables of sets.
inline constexpr std::string_view kSetTables[] = {"LoadSets", "ConstraintSets", "DesignScenarios"};

/// "LoadSetID" of "LoadSets".
std::string key_of_sets(std::string_view table);

}  // namespace model
