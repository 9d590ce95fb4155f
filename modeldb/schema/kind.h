#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "modeldb/engine/table_definition.h"

namespace modeldb {

/// One kind of persistent object: the table of its rows, and the classes of its objects.
struct Kind {
  std::wstring object;  // "NodalForce"
  std::wstring table;   // "NodalForces"
  std::wstring key;     // "NodalForceID"
  /// Without the key; Description is the first.
  std::vector<Column> columns;
  /// The table of the sets that its objects belong to, such as "LoadSets"; empty for none.
  std::wstring sets;

  IID object_interface;
  CLSID object_class;
  CLSID collection_class;
  IID collection_interface;

  /// The table that links its objects to their sets.
  [[nodiscard]] std::wstring link_table() const { return object + sets; }
};

}  // namespace modeldb
