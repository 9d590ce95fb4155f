#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tools/model/database.h"
#include "tools/model/kinds.h"

namespace orv {

/// Names of sets, in the order of their keys.
using Names = std::vector<std::string>;
/// Nothing stands for a value that the model does not have.
using Cell = std::variant<std::monostate, long, double, std::string, Names>;
using Row = std::vector<Cell>;

/// Rows of a model under the names of their columns, from the first to the last. A record's row has
/// its key, Description, VertexID, the vertex's X, Y and Z, the kind's own columns, and under the
/// name of their table the names of the sets that it is in.
class Listing {
 public:
  /// `table` is that of a kind as model::find_kind takes it, of sets, or Vertices. `where` is a
  /// condition over the table's own columns, `set` the name of a set; empty for all rows. Raises,
  /// with a sentence, when there is no such table or set.
  Listing(model::Database& database, const std::string& table, const std::string& where = {},
          const std::string& set = {});

  /// How many rows each table has, and of records how many in each set.
  static Listing overview(model::Database& database);
  /// Rows that are not those of a table.
  Listing(std::vector<std::string> columns, std::vector<Row> rows)
      : columns_(std::move(columns)), given_(std::move(rows)) {}

  [[nodiscard]] const std::vector<std::string>& columns() const { return columns_; }
  /// False behind the last row.
  bool next(Row& row);

 private:
  explicit Listing(model::Rows rows);

  void open_records(model::Database& database, const model::Kind& kind, std::string condition,
                    const std::string& set);
  [[nodiscard]] Names sets_of(long record);

  std::vector<std::string> columns_;
  std::vector<Row> given_;
  std::size_t next_given_ = 0;
  std::optional<model::Rows> rows_;
  std::optional<model::Rows> links_;  // record and name of the set, in the order of the records
  bool is_at_link_ = false;
};

/// `text` as a literal of SQL.
std::string sql_literal(const std::string& text);

}  // namespace orv
