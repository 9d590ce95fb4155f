#include "modeldb/schema/make_tables.h"

#include <utility>
#include <vector>

#include "modeldb/engine/savepoint.h"
#include "modeldb/schema/definition.h"

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

Lack lack_of(const Database& database, const Catalogue& catalogue, const Schema& schema) {
  Lack lack;
  lack.is_older = schema.version() != kSchemaVersion;
  for (TableDefinition& table : table_definitions(catalogue)) {
    if (!schema.has(table.name)) {
      lack.tables.push_back(std::move(table));
      continue;
    }
    if (schema.require_shape(table) == Shape::kWithoutLinkRule) {
      if (schema.version() >= kLinkRules) {
        fail_on_shape(database.location(), table, L"it lacks the rule " + table.link_rule());
      }
      lack.link_rules.push_back(std::move(table));
    }
  }
  for (IndexDefinition& index : index_definitions(catalogue)) {
    if (!schema.has(index.name)) lack.indexes.push_back(std::move(index));
  }
  return lack;
}

void make(const Lack& lack, Schema& schema) {
  for (const TableDefinition& table : lack.tables) schema.make(table);
  for (const TableDefinition& links : lack.link_rules) schema.add_link_rule(links);
  for (const IndexDefinition& index : lack.indexes) schema.make(index);
  if (lack.is_older) schema.set_version(kSchemaVersion);
}

}  // namespace

void make_tables(Database& database, const Catalogue& catalogue) {
  const auto found = database.engine().read_schema();
  if (lack_of(database, catalogue, *found).is_nothing()) return;
  if (!found->is_empty() && database.is_read_only()) return;
  // Once more inside the transaction: another program may just have made what is lacking.
  Savepoint whole(database);
  const auto schema = database.engine().read_schema();
  make(lack_of(database, catalogue, *schema), *schema);
  // Raises when what was made is still not what is needed, so that it is undone.
  (void)lack_of(database, catalogue, *database.engine().read_schema());
  whole.release();
}

}  // namespace modeldb
