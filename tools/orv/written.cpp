#include "tools/orv/written.h"

#include <iostream>

#include "tools/content/shown_text.h"
#include "tools/model/kinds.h"

namespace orv {

std::string counts_of_records(model::Database& database) {
  std::string counts;
  for (const model::Kind& kind : model::kinds_of(database)) {
    const long count = count_of(database, kind.table);
    if (count == 0) continue;
    counts += (counts.empty() ? "" : ", ") + std::to_string(count) + ' ' + kind.table;
  }
  return counts;
}

long count_of(model::Database& database, const std::string& table) {
  model::Rows rows = database.query("SELECT COUNT(*) FROM " + table);
  return rows.next() ? rows.integer(0) : 0;
}

std::string counted(long count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

void tell_written(const std::string& path, const std::string& content) {
  std::cout << content::without_controls(path) << " written"
            << (content.empty() ? "" : ": " + content) << '\n';
}

}  // namespace orv
