#include "modeldb/schema/tables.h"

#include <vector>

#include "modeldb/engine/savepoint.h"
#include "modeldb/schema/definition.h"
#include "modeldb/schema/shape.h"
#include "modeldb/schema/upgrade.h"

namespace modeldb {
namespace {

/// The first version in which a link goes with its set.
constexpr int kLinkRules = 2;

/// What a file lacks of what the kinds need.
struct Lack {
  std::vector<TableDefinition> tables;
  std::vector<TableDefinition> link_rules;
  std::vector<IndexDefinition> indexes;
  bool is_older = false;

  [[nodiscard]] bool is_nothing() const {
    return tables.empty() && link_rules.empty() && indexes.empty() && !is_older;
  }
};

Lack lack_of(Database& database, const Catalogue& catalogue, const SchemaEntries& entries) {
  const int version = database.schema_version();
  Lack lack{.is_older = version != kSchemaVersion};
  for (TableDefinition& table : table_definitions(catalogue)) {
    const auto found = entries.find(table.name);
    if (found == entries.end()) {
      lack.tables.push_back(std::move(table));
      continue;
    }
    if (require_shape(database, table, found->second) == Shape::kWithoutLinkRule) {
      if (version >= kLinkRules) fail_without_link_rule(database, table);
      lack.link_rules.push_back(std::move(table));
    }
  }
  for (IndexDefinition& index : index_definitions(catalogue)) {
    if (!entries.contains(index.name)) lack.indexes.push_back(std::move(index));
  }
  return lack;
}

void make(Database& database, const Lack& lack, const SchemaEntries& entries) {
  for (const TableDefinition& table : lack.tables) database.execute(table.sql());
  for (const TableDefinition& links : lack.link_rules) {
    add_link_rule(database, links, entries.find(links.name)->second);
  }
  for (const IndexDefinition& index : lack.indexes) database.execute(index.sql());
  if (lack.is_older) database.set_schema_version(kSchemaVersion);
}

}  // namespace

bool has_table(Database& database, std::wstring_view name) {
  // Names of tables are compared without regard to case.
  return database
      .query(L"SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ? COLLATE NOCASE", name)
      ->step();
}

void make_tables(Database& database, const Catalogue& catalogue) {
  const SchemaEntries found = read_schema(database);
  if (lack_of(database, catalogue, found).is_nothing()) return;
  if (!found.empty() && database.is_read_only()) return;
  // Once more inside the transaction: another program may just have made what is lacking.
  Savepoint whole(database);
  const SchemaEntries entries = read_schema(database);
  make(database, lack_of(database, catalogue, entries), entries);
  // Raises when what was made is still not what is needed, so that it is undone.
  (void)lack_of(database, catalogue, read_schema(database));
  whole.release();
}

}  // namespace modeldb
