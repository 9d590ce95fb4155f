#pragma once

#include <map>
#include <string>

#include "modeldb/base/ascii.h"
#include "modeldb/sqlite/shape.h"

namespace modeldb {

/// The schema of an SQLite file.
class SqliteSchema final : public Schema {
 public:
  explicit SqliteSchema(SqliteFile& file);

  [[nodiscard]] int version() const override { return version_; }
  [[nodiscard]] bool is_empty() const override { return entries_.empty(); }
  [[nodiscard]] bool has(std::wstring_view name) const override;
  [[nodiscard]] Shape require_shape(const TableDefinition& needed) const override;

  void make(const TableDefinition& table) override;
  void make(const IndexDefinition& index) override;
  void add_link_rule(const TableDefinition& links) override;
  void set_version(int version) override;

 private:
  [[nodiscard]] const SchemaEntry& entry(const TableDefinition& table) const;

  SqliteFile& file_;
  int version_;
  std::map<std::wstring, SchemaEntry, NameOrder> entries_;  // by name
};

}  // namespace modeldb
