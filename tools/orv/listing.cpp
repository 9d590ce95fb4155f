#include "tools/orv/listing.h"

#include <orv_modeldb.h>

#include <algorithm>

#include "com/bstr.h"
#include "com/error.h"
#include "com/ptr.h"
#include "com/variant.h"
#include "tools/text/failure.h"
#include "tools/text/utf8.h"

namespace orv {
namespace {

/// The table as it stands in a query, cut down to the rows that are wanted.
std::string source(const std::string& table, const std::string& condition) {
  return condition.empty() ? table : "(SELECT * FROM " + table + " WHERE " + condition + ")";
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

void require_set(model::Database& database, const std::string& table, const std::string& name) {
  model::Rows found =
      database.query("SELECT COUNT(*) FROM " + table + " WHERE Description = " + sql_literal(name));
  if (found.next() && found.integer(0) > 0) return;
  Names names;
  model::Rows rows = database.query("SELECT Description FROM " + table + " LIMIT 20");
  while (rows.next()) names.push_back("\"" + rows.text(0) + "\"");
  text::fail(text::kInvalidArgument,
             "There is no set \"" + name + "\" among the " + table + " of the model. " +
                 (names.empty() ? "It has none." : "It has " + joined(names) + "."));
}

bool is_set_table(const std::string& table) {
  return std::ranges::find(model::kSetTables, table) != std::end(model::kSetTables);
}

/// A condition that is one expression can stand in any place for one; a text that closes the
/// parenthesis around it, to go on with something else, fails in the second place.
void require_condition(model::Database& database, const std::string& name,
                       const std::string& where) {
  const std::string table = is_set_table(name) || name == "Vertices"
                                ? name
                                : model::find_kind(model::kinds_of(database), name).table;
  try {
    database.query("SELECT 1 FROM " + table + " WHERE (" + where + ") LIMIT 1");
    database.query("SELECT CASE WHEN " + where + " THEN 1 END FROM " + table + " LIMIT 1");
  } catch (const com::Error& error) {
    // What the model says of such a condition names it, and the column that was meant.
    const auto model = com::Ptr<IDispatch>(database.object()).query<IModelDatabaseFile>();
    com::Ptr<IDispatch> records;
    const com::Variant none = com::Variant::omitted();
    if (model) {
      com::check(model->Load(com::Bstr(text::to_wide(table)).get(),
                             com::Variant(com::Bstr(text::to_wide(where))), none, records.put()),
                 model);
    }
    throw;
  }
}

/// With the card of the deck that each comes from.
std::string query_of_sets(const std::string& table, const std::string& condition) {
  const std::string key = model::key_of_sets(table);
  const std::string from = source(table, condition) + " AS s";
  if (table == "DesignScenarios") return "SELECT * FROM " + from + " ORDER BY s." + key;
  return "SELECT s." + key + ", s.Description, c.Step, c.Keyword, c.Parameters, c.Line FROM " +
         from + " LEFT JOIN SetSources AS c ON c." + key + " = s." + key + " ORDER BY s." + key;
}

std::vector<std::string> names_of(const model::Rows& rows) {
  std::vector<std::string> names;
  for (const model::Column& column : rows.columns()) names.push_back(column.name);
  return names;
}

Cell cell_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_NULL:
      return {};
    case VT_I4:
      return value.lVal;
    case VT_R8:
      return value.dblVal;
    case VT_BSTR:
      return text::to_utf8(com::Bstr::view(value.bstrVal));
    default:
      return text::to_utf8(com::Bstr::view(com::Variant(value).as(VT_BSTR).get().bstrVal));
  }
}

}  // namespace

std::string sql_literal(const std::string& text) {
  std::string literal = "'";
  for (const char c : text) literal += c == '\'' ? std::string("''") : std::string(1, c);
  return literal + "'";
}

Listing::Listing(model::Rows rows) : columns_(names_of(rows)), rows_(std::move(rows)) {}

Listing::Listing(model::Database& database, const std::string& table, const std::string& where,
                 const std::string& set) {
  const std::string condition = where.empty() ? "" : "(" + where + ")";
  const bool is_of_sets = is_set_table(table);
  if (!where.empty()) require_condition(database, table, where);
  if (!is_of_sets && table != "Vertices") {
    open_records(database, model::find_kind(model::kinds_of(database), table), condition, set);
    return;
  }
  if (!set.empty()) {
    text::fail(text::kInvalidArgument, "Only records are in sets, and " + table + " are none.");
  }
  rows_ = database.query(is_of_sets
                             ? query_of_sets(table, condition)
                             : "SELECT * FROM " + source(table, condition) + " ORDER BY VertexID");
  columns_ = names_of(*rows_);
}

Listing Listing::overview(model::Database& database) {
  std::string sql =
      "SELECT 0 AS Place, 0 AS SetID, 'Vertices' AS Kind, '' AS InSet, COUNT(*) AS Records "
      "FROM Vertices";
  int place = 0;
  for (const model::Kind& kind : model::kinds_of(database)) {
    const std::string set_key = model::key_of_sets(kind.sets);
    const std::string at = "SELECT " + std::to_string(++place) + ", ";
    const std::string name = "'" + kind.table + "', ";
    // The records of each set, and those that are in none.
    sql += " UNION ALL " + at + "l." + set_key + ", " + name +
           "MAX(s.Description), COUNT(*) FROM " + kind.link_table() + " AS l JOIN " + kind.sets +
           " AS s ON s." + set_key + " = l." + set_key + " GROUP BY l." + set_key;
    // Behind all of the sets.
    sql += " UNION ALL " + at + "2147483647, " + name + "'', COUNT(*) FROM " + kind.table +
           " WHERE " + kind.key() + " NOT IN (SELECT " + kind.key() + " FROM " + kind.link_table() +
           ") HAVING COUNT(*) > 0";
  }
  return Listing(database.query("SELECT Kind, InSet, Records FROM (" + sql +
                                ") AS Overview ORDER BY Place, SetID"));
}

void Listing::open_records(model::Database& database, const model::Kind& kind,
                           std::string condition, const std::string& set) {
  const std::string key = kind.key();
  if (!set.empty()) {
    const std::string set_key = model::key_of_sets(kind.sets);
    require_set(database, kind.sets, set);
    condition += (condition.empty() ? "" : " AND ") + key + " IN (SELECT " + key + " FROM " +
                 kind.link_table() + " JOIN " + kind.sets + " ON " + kind.sets + "." + set_key +
                 " = " + kind.link_table() + "." + set_key +
                 " WHERE Description = " + sql_literal(set) + ")";
  }
  const std::string records = source(kind.table, condition);
  std::string columns = "r." + key + ", r.Description, r.VertexID, v.X, v.Y, v.Z";
  for (const std::string& column : kind.columns) columns += ", r." + column;
  rows_ =
      database.query("SELECT " + columns + " FROM " + records +
                     " AS r LEFT JOIN Vertices AS v ON v.VertexID = r.VertexID ORDER BY r." + key);
  columns_ = names_of(*rows_);
  columns_.push_back(kind.sets);
  const std::string set_key = model::key_of_sets(kind.sets);
  links_ = database.query("SELECT l." + key + ", s.Description FROM " + kind.link_table() +
                          " AS l JOIN " + kind.sets + " AS s ON s." + set_key + " = l." + set_key +
                          " ORDER BY l." + key + ", s." + set_key);
  is_at_link_ = links_->next();
}

Names Listing::sets_of(long record) {
  Names names;
  for (; is_at_link_ && links_->integer(0) <= record; is_at_link_ = links_->next()) {
    if (links_->integer(0) == record) names.push_back(links_->text(1));
  }
  return names;
}

bool Listing::next(Row& row) {
  row.clear();
  if (!rows_) {
    if (next_given_ == given_.size()) return false;
    row = given_[next_given_++];
    return true;
  }
  if (!rows_->next()) return false;
  for (std::size_t column = 0; column < rows_->width(); ++column) {
    row.push_back(cell_of(rows_->value(column)));
  }
  if (links_) row.emplace_back(sets_of(rows_->integer(0)));
  return true;
}

}  // namespace orv
