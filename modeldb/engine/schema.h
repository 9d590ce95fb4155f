#pragma once

#include <string_view>

#include "modeldb/engine/table_definition.h"

namespace modeldb {

/// Whether a table is as the model needs it. Other programs may reshape tables, and rows would then
/// get lost or misnumbered without a word.
enum class Shape {
  kRight,
  kWithoutLinkRule,  ///< right, but that nothing holds a link to its set
};

/// What a database has of tables and indexes, as read at one moment, and how it gets more. What
/// changes it is for use inside a transaction, and leaves what was read as it is.
class Schema {
 public:
  Schema() = default;
  Schema(const Schema&) = delete;
  Schema& operator=(const Schema&) = delete;
  virtual ~Schema() = default;

  /// The version of the tables; 0 when nobody has made any.
  [[nodiscard]] virtual int version() const = 0;
  [[nodiscard]] virtual bool is_empty() const = 0;
  /// Whether there is a table or index of that name, whatever the case of its letters.
  [[nodiscard]] virtual bool has(std::wstring_view name) const = 0;
  /// Compares a table that is there with its definition. More columns than the definition has are
  /// fine when they allow NULL. Raises fail_on_shape otherwise.
  [[nodiscard]] virtual Shape require_shape(const TableDefinition& needed) const = 0;

  virtual void make(const TableDefinition& table) = 0;
  virtual void make(const IndexDefinition& index) = 0;
  /// Gives the link rule to a table whose links nothing held to their sets. Links to sets that are
  /// gone go too: a later set of that number would inherit them. Everything else that the table has
  /// stays.
  virtual void add_link_rule(const TableDefinition& links) = 0;
  virtual void set_version(int version) = 0;
};

}  // namespace modeldb
