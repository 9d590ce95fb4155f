#include "modeldb/schema/link_keeper.h"

#include "modeldb/schema/tables.h"

namespace modeldb {

// Triggers of the connection, not a rule of the tables: records may write their links before their
// row is there, and with key 0.
void keep_links_with_records(Database& database, const Catalogue& catalogue) {
  for (const Table& table : catalogue.tables()) {
    const Kind& kind = table.kind();
    if (kind.sets.empty() || !has_table(database, kind.table)) continue;
    const std::wstring of_the_old = L" WHERE " + kind.key + L" = OLD." + kind.key + L"; END";
    database.execute(L"CREATE TEMP TRIGGER orv_" + kind.object + L"_deleted AFTER DELETE ON " +
                     kind.table + L" BEGIN DELETE FROM " + kind.link_table() + of_the_old);
    database.execute(L"CREATE TEMP TRIGGER orv_" + kind.object + L"_renumbered AFTER UPDATE OF " +
                     kind.key + L" ON " + kind.table + L" WHEN NEW." + kind.key + L" IS NOT OLD." +
                     kind.key + L" BEGIN UPDATE " + kind.link_table() + L" SET " + kind.key +
                     L" = NEW." + kind.key + of_the_old);
  }
}

}  // namespace modeldb
