#include "modeldb/schema/vertex_guard.h"

#include "modeldb/schema/definition.h"
#include "modeldb/schema/host_kinds.h"

namespace modeldb {
namespace {

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

void guard_vertices(Database& database, const Catalogue& catalogue) {
  RowGuard vertices{.table = vertex_kind().table, .key = vertex_kind().key, .standing = {}};
  for (const Table& table : catalogue.tables()) {
    if (stands_on_vertex(table.kind())) vertices.standing.push_back(table.kind().table);
  }
  database.engine().guard(vertices);
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
