#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/engine/schema.h"
#include "modeldb/odbc/session.h"

namespace modeldb {

/// The schema of the server in which the model lies: the first of the user's search path.
class OdbcSchema final : public Schema {
 public:
  /// Reads it. Inside a transaction, whoever else makes the model's tables is waited for.
  explicit OdbcSchema(Session& session);

  [[nodiscard]] int version() const override { return version_; }
  [[nodiscard]] bool is_empty() const override { return tables_.empty(); }
  [[nodiscard]] bool has(std::wstring_view name) const override;
  [[nodiscard]] Shape require_shape(const TableDefinition& needed) const override;

  void make(const TableDefinition& table) override;
  void make(const IndexDefinition& index) override;
  void add_link_rule(const TableDefinition& links) override;
  void set_version(int version) override;

 private:
  struct FoundColumn {
    std::wstring name;
    std::wstring type;
    bool is_not_null;
    bool is_in_key;
  };
  struct FoundTable {
    wchar_t kind = L'r';
    std::vector<FoundColumn> columns;
    bool gives_keys = false;
    int link_rules = 0;
  };

  /// Runs a statement that only the owner of the tables may run.
  void change(std::wstring_view sql);
  void read_tables();
  void read_version();
  [[nodiscard]] static std::wstring fault_of(const TableDefinition& needed,
                                             const FoundTable& found);

  Session& session_;
  int version_ = 0;
  std::map<std::wstring, FoundTable, std::less<>> tables_;  // by name, in small letters
};

}  // namespace modeldb
