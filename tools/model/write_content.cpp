#include "tools/model/appending.h"
#include "tools/model/content.h"
#include "tools/model/insertion.h"
#include "tools/model/kinds.h"

namespace model {
namespace {

void write_vertices(Database& database, const content::Vertices& vertices) {
  Appending rows(database, "Vertices", {"VertexID", "X", "Y", "Z"});
  for (std::size_t i = 0; i < vertices.ids.size(); ++i) {
    rows.add(vertices.ids[i]);
    for (const double coordinate : vertices.coordinates[i]) rows.add(coordinate);
  }
  rows.finish();
}

void write_sets(Database& database, const content::SetTable& table) {
  Insertion rows(database, table.name, key_of_sets(table.name) + ", Description");
  for (const content::Set& set : table.sets) {
    rows.begin_row();
    rows.add(static_cast<long>(set.id));
    rows.add(set.name);
  }
  rows.finish();
}

void write_records(Database& database, const content::Table& table) {
  if (table.size() == 0) return;
  std::vector<std::string> columns{"VertexID", key_of_sets(table.sets)};
  columns.insert(columns.end(), table.columns.begin(), table.columns.end());
  Appending rows(database, table.name, columns);
  const std::size_t width = table.columns.size();
  for (std::size_t record = 0; record < table.size(); ++record) {
    rows.add(table.vertices[record]);
    rows.add(table.set_ids[record].front());
    for (std::size_t column = 0; column < width; ++column) {
      rows.add(table.values[record * width + column]);
    }
  }
  rows.finish();
}

}  // namespace

void write_content(Database& database, const content::Content& content) {
  write_vertices(database, content.vertices);
  for (const content::SetTable& table : content.set_tables) write_sets(database, table);
  for (const content::Table& table : content.tables) write_records(database, table);
}

}  // namespace model
