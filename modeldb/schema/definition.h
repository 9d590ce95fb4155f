#pragma once

#include <string>
#include <vector>

#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// A table of the model: the rows of one kind, the links of one kind to its sets, or what the model
/// remembers of its origin.
struct TableDefinition {
  std::wstring name;
  std::wstring key;             ///< which gives every row its number; a link table has none
  std::vector<Column> columns;  ///< the others
  std::wstring sets;            ///< of a link table: the table of the sets

  [[nodiscard]] bool is_link_table() const { return !sets.empty(); }
  /// The key of the sets, which a link table's first column refers to.
  [[nodiscard]] const std::wstring& sets_key() const { return columns.front().name; }
  /// The rule by which a link goes when its set goes, and stands for no other.
  [[nodiscard]] std::wstring link_rule() const;
  /// The statement that makes the table.
  [[nodiscard]] std::wstring sql() const;
};

/// An index that keeps a statement from reading a whole table.
struct IndexDefinition {
  std::wstring name;
  std::wstring table;
  std::wstring columns;

  [[nodiscard]] std::wstring sql() const;
};

const wchar_t* sql_type(ColumnType type);

/// Every table, the sets' before those of the links to them.
std::vector<TableDefinition> table_definitions(const Catalogue& catalogue);
std::vector<IndexDefinition> index_definitions(const Catalogue& catalogue);

/// Whether the objects of the kind stand on a vertex.
bool stands_on_vertex(const Kind& kind);

}  // namespace modeldb
