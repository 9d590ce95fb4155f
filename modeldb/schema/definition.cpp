#include "modeldb/schema/definition.h"

#include <algorithm>
#include <iterator>

#include "modeldb/schema/host_kinds.h"
#include "modeldb/schema/origin_tables.h"

namespace modeldb {

std::vector<TableDefinition> table_definitions(const Catalogue& catalogue) {
  std::vector<TableDefinition> definitions;
  for (const Table& table : catalogue.tables()) {
    const Kind& kind = table.kind();
    definitions.push_back(
        {.name = kind.table, .key = kind.key, .columns = kind.columns, .sets = {}});
    if (const Table* const sets = catalogue.find(kind.sets)) {
      // Records write their links unchecked, also twice and before they have an ID, so that the
      // pairs are no key, and nothing holds a link to its record.
      definitions.push_back(
          {.name = kind.link_table(),
           .key = {},
           .columns = {{sets->kind().key, ColumnType::kInteger}, {kind.key, ColumnType::kInteger}},
           .sets = kind.sets});
    }
  }
  std::ranges::copy(origin_tables(), std::back_inserter(definitions));
  return definitions;
}

std::vector<IndexDefinition> index_definitions(const Catalogue& catalogue) {
  std::vector<IndexDefinition> definitions;
  for (const Table& table : catalogue.tables()) {
    const Kind& kind = table.kind();
    // Deleting a vertex looks for records that stand on it.
    if (stands_on_vertex(kind)) {
      definitions.push_back({kind.table + L"ByVertex", kind.table, vertex_kind().key});
    }
    if (const Table* const sets = catalogue.find(kind.sets)) {
      const std::wstring links = kind.link_table();
      const std::wstring& set_key = sets->kind().key;
      // Both columns: reading the sets of a record then needs the index alone.
      definitions.push_back({links + L"By" + kind.object, links, kind.key + L", " + set_key});
      // Deleting a set deletes its links.
      definitions.push_back({links + L"By" + sets->kind().object, links, set_key});
    }
  }
  return definitions;
}

bool stands_on_vertex(const Kind& kind) {
  return std::ranges::find(kind.columns, vertex_kind().key, &Column::name) != kind.columns.end();
}

}  // namespace modeldb
