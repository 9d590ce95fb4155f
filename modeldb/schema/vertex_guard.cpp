#include "modeldb/schema/vertex_guard.h"

#include "modeldb/schema/definition.h"
#include "modeldb/schema/host_kinds.h"

namespace modeldb {
namespace {

/// A condition that holds when records stand on the vertex that a statement is about to change.
std::wstring is_occupied(const Catalogue& catalogue) {
  const std::wstring& key = vertex_kind().key;
  std::wstring condition;
  for (const Table& table : catalogue.tables()) {
    if (!stands_on_vertex(table.kind())) continue;
    condition += (condition.empty() ? L"EXISTS (SELECT 1 FROM " : L" OR EXISTS (SELECT 1 FROM ") +
                 table.kind().table + L" WHERE " + key + L" = OLD." + key + L")";
  }
  return condition.empty() ? L"0" : condition;
}

/// "NodalForce 7", or "3 NodalForces (1, 2, 5)"; empty when none of the kind stands there.
std::wstring records_on_vertex(Database& database, const Kind& kind, long id) {
  constexpr int kNamed = 5;
  int number = 0;
  std::wstring keys;
  const auto rows = database.query(L"SELECT " + kind.key + L" FROM " + kind.table + L" WHERE " +
                                       vertex_kind().key + L" = ? ORDER BY " + kind.key,
                                   id);
  for (; rows->step(); ++number) {
    if (number < kNamed) {
      keys += (keys.empty() ? L"" : L", ") + std::to_wstring(rows->integer(0));
    }
  }
  if (number == 0) return {};
  if (number == 1) return kind.object + L" " + keys;
  return std::to_wstring(number) + L" " + kind.table + L" (" + keys +
         (number > kNamed ? L", ...)" : L")");
}

}  // namespace

// A trigger of the connection, not a rule of the tables: those would refuse a record whose vertex
// is not saved, too. Triggers that a file brings with it do not run.
void guard_vertices(Database& database, const Catalogue& catalogue) {
  const std::wstring& table = vertex_kind().table;
  const std::wstring& key = vertex_kind().key;
  const std::wstring refusal =
      L" BEGIN SELECT RAISE(ABORT, 'records stand on a vertex that it deletes or renumbers. Delete "
      L"them, or put them on another vertex, first'); END";
  const std::wstring occupied = is_occupied(catalogue);
  database.execute(L"CREATE TEMP TRIGGER orv_occupied_vertex_deleted BEFORE DELETE ON " + table +
                   L" WHEN " + occupied + refusal);
  database.execute(L"CREATE TEMP TRIGGER orv_occupied_vertex_renumbered BEFORE UPDATE OF " + key +
                   L" ON " + table + L" WHEN NEW." + key + L" IS NOT OLD." + key + L" AND (" +
                   occupied + L")" + refusal);
}

std::wstring records_on_vertex(Database& database, const Catalogue& catalogue, long id) {
  std::wstring list;
  for (const Table& table : catalogue.tables()) {
    if (!stands_on_vertex(table.kind())) continue;
    const std::wstring records = records_on_vertex(database, table.kind(), id);
    if (!records.empty()) list += (list.empty() ? L"" : L", ") + records;
  }
  return list;
}

}  // namespace modeldb
