#include "modeldb/engine/table_definition.h"

#include "modeldb/base/failure.h"

namespace modeldb {

std::wstring TableDefinition::link_rule() const {
  return L"FOREIGN KEY (" + sets_key() + L") REFERENCES " + sets + L" (" + sets_key() +
         L") ON UPDATE CASCADE ON DELETE CASCADE";
}

void fail_on_shape(std::wstring_view location, const TableDefinition& table,
                   const std::wstring& fault) {
  fail(kCannotOpenFile, L"The table " + table.name + L" of the model " + quoted(location) +
                            L" was given another shape by another program: " + fault +
                            L". Give it back the shape that it has in a new model, or take a copy "
                            L"of the file that was saved earlier.");
}

}  // namespace modeldb
