#include "modeldb/schema/link_keeper.h"

namespace modeldb {

void keep_links_with_records(Database& database, const Catalogue& catalogue) {
  for (const Table& table : catalogue.tables()) {
    const Kind& kind = table.kind();
    if (kind.sets.empty() || !database.engine().has_table(kind.table)) continue;
    database.engine().keep_links({.object = kind.object,
                                  .table = kind.table,
                                  .key = kind.key,
                                  .link_table = kind.link_table()});
  }
}

}  // namespace modeldb
