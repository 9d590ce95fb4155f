#pragma once

#include <span>
#include <string>

#include "modeldb/engine/database.h"
#include "modeldb/schema/kind.h"

namespace modeldb {

/// The statements on the rows of one kind, by their key. Values come in the order of the kind's
/// columns.
class Table {
 public:
  explicit Table(Kind kind);

  [[nodiscard]] const Kind& kind() const { return kind_; }
  /// "Description, VertexID, …", as SqlString 3 of an object of the kind says it.
  [[nodiscard]] const std::wstring& column_list() const { return column_list_; }
  /// "Description = ?, VertexID = ?, …"
  [[nodiscard]] const std::wstring& assignments() const { return assignments_; }

  /// Inserts a row under the key `id`, or under a new one when that is 0; returns the key.
  long insert(Database& database, long id, std::span<const Literal> values) const;
  /// As insert(), under a key that no row had. Where several programs insert rows at the same time
  /// and one of them has just made that row, what is not empty or NULL here is written into it.
  void provide(Database& database, long id, std::span<const Literal> values) const;
  /// False when no row has that key.
  bool update(Database& database, long id, std::span<const Literal> values) const;
  /// False when no row has that key, or its values are not those that are `saved` any more.
  bool update_unchanged(Database& database, long id, std::span<const Literal> values,
                        std::span<const Literal> saved) const;
  bool remove(Database& database, long id) const;
  /// False when no row has that key, or its values are not those that are `saved` any more.
  bool remove_unchanged(Database& database, long id, std::span<const Literal> saved) const;

  /// A query that stands at the row with that key, its columns those of the kind; empty when there
  /// is no such row.
  [[nodiscard]] StatementLease find(Database& database, long id) const;

 private:
  [[nodiscard]] std::wstring merging() const;
  /// The statement that inserts the row, with all that it needs.
  StatementLease insertion(Database& database, long id, std::span<const Literal> values) const;

  Kind kind_;
  std::wstring column_list_;
  std::wstring assignments_;
  FixedText insert_;
  FixedText append_;
  FixedText provide_;
  FixedText update_;
  FixedText update_unchanged_;
  FixedText remove_;
  FixedText remove_unchanged_;
  FixedText find_;
};

}  // namespace modeldb
