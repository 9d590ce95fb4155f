#include <algorithm>

#include "tools/model/content.h"
#include "tools/model/insertion.h"
#include "tools/model/kinds.h"
#include "tools/text/failure.h"

namespace model {
namespace {

void write_vertices(Database& database, const content::Vertices& vertices) {
  Insertion rows(database, "Vertices", "VertexID, Description, X, Y, Z");
  for (std::size_t i = 0; i < vertices.ids.size(); ++i) {
    rows.begin_row();
    rows.add(static_cast<long>(vertices.ids[i]));
    rows.add("");
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

void add_record(Insertion& rows, const content::Table& table, std::size_t record,
                content::Key key) {
  rows.begin_row();
  if (key != 0) rows.add(static_cast<long>(key));
  rows.add(table.descriptions.empty() ? std::string_view() : table.descriptions[record]);
  rows.add(static_cast<long>(table.vertices[record]));
  const std::size_t width = table.columns.size();
  for (std::size_t column = 0; column < width; ++column) {
    rows.add(table.values[record * width + column]);
  }
}

std::string columns_of(const content::Table& table) {
  std::string columns = "Description, VertexID";
  for (const std::string& column : table.columns) columns += ", " + column;
  return columns;
}

/// The first record's key is the model's to choose: keys of deleted records are not given again.
/// Those of the others follow it.
content::Key write_first(Database& database, const Kind& kind, const content::Table& table) {
  Insertion first(database, table.name, columns_of(table));
  add_record(first, table, 0, 0);
  first.finish();
  Rows newest = database.query("SELECT MAX(" + kind.key() + ") FROM " + kind.table);
  newest.next();
  return newest.integer(0);
}

std::vector<content::Key> write_records(Database& database, const Kind& kind,
                                        const content::Table& table) {
  std::vector<content::Key> keys;
  if (table.size() == 0) return keys;
  keys.push_back(write_first(database, kind, table));
  Insertion others(database, table.name, kind.key() + ", " + columns_of(table));
  for (std::size_t record = 1; record < table.size(); ++record) {
    keys.push_back(keys.back() + 1);
    add_record(others, table, record, keys.back());
  }
  others.finish();
  return keys;
}

void write_links(Database& database, const Kind& kind, const content::Table& table,
                 const std::vector<content::Key>& keys) {
  Insertion links(database, kind.link_table(), key_of_sets(kind.sets) + ", " + kind.key());
  for (std::size_t record = 0; record < keys.size(); ++record) {
    for (const content::Key set : table.set_ids[record]) {
      links.begin_row();
      links.add(static_cast<long>(set));
      links.add(static_cast<long>(keys[record]));
    }
  }
  links.finish();
}

}  // namespace

Keys write_content(Database& database, const content::Content& content) {
  write_vertices(database, content.vertices);
  for (const content::SetTable& table : content.set_tables) write_sets(database, table);
  const std::vector<Kind> kinds = kinds_of(database);
  Keys keys;
  for (const content::Table& table : content.tables) {
    const Kind& kind = find_kind(kinds, table.name);
    keys.push_back(write_records(database, kind, table));
    if (!kind.sets.empty()) write_links(database, kind, table, keys.back());
  }
  return keys;
}

}  // namespace model
