#include "tools/model/content.h"
#include "tools/model/kinds.h"

namespace model {
namespace {

content::Vertices read_vertices(Database& database) {
  content::Vertices vertices;
  Rows rows = database.query("SELECT VertexID, X, Y, Z FROM Vertices ORDER BY VertexID");
  while (rows.next()) {
    vertices.ids.push_back(rows.integer(0));
    vertices.coordinates.push_back({rows.real_or_nan(1), rows.real_or_nan(2), rows.real_or_nan(3)});
  }
  return vertices;
}

content::SetTable read_sets(Database& database, std::string_view table) {
  content::SetTable sets{.name = std::string(table), .sets = {}};
  const std::string key = key_of_sets(table);
  Rows rows =
      database.query("SELECT " + key + ", Description FROM " + sets.name + " ORDER BY " + key);
  while (rows.next()) sets.sets.push_back({.id = rows.integer(0), .name = rows.text(1)});
  return sets;
}

void read_links(Database& database, const Kind& kind, content::Table& table) {
  const std::string set_key = key_of_sets(kind.sets);
  Rows rows = database.query("SELECT " + kind.key() + ", " + set_key + " FROM " +
                             kind.link_table() + " ORDER BY " + kind.key() + ", " + set_key);
  // Both are in the order of the keys. A link without its record is passed over.
  std::size_t record = 0;
  while (rows.next()) {
    const content::Key key = rows.integer(0);
    while (record < table.size() && table.ids[record] < key) ++record;
    if (record == table.size()) break;
    if (table.ids[record] == key) table.set_ids[record].push_back(rows.integer(1));
  }
}

content::Table read_table(Database& database, const Kind& kind) {
  content::Table table;
  table.name = kind.table;
  table.sets = kind.sets;
  table.columns = kind.columns;
  std::string sql = "SELECT " + kind.key() + ", VertexID, Description";
  for (const std::string& column : kind.columns) sql += ", " + column;
  Rows rows = database.query(sql + " FROM " + kind.table + " ORDER BY " + kind.key());
  bool is_described = false;
  while (rows.next()) {
    table.ids.push_back(rows.integer(0));
    table.vertices.push_back(rows.integer(1));
    table.descriptions.push_back(rows.text(2));
    is_described = is_described || !table.descriptions.back().empty();
    for (std::size_t column = 0; column < kind.columns.size(); ++column) {
      table.values.push_back(rows.real(3 + column));
    }
  }
  if (!is_described) table.descriptions.clear();
  table.set_ids.resize(table.size());
  if (!kind.sets.empty()) read_links(database, kind, table);
  return table;
}

}  // namespace

content::Content read_content(Database& database) {
  content::Content content;
  content.vertices = read_vertices(database);
  for (const std::string_view table : kSetTables) {
    content.set_tables.push_back(read_sets(database, table));
  }
  for (const Kind& kind : kinds_of(database)) content.tables.push_back(read_table(database, kind));
  return content;
}

}  // namespace model
