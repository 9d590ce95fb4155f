#pragma once

#include <set>
#include <span>
#include <string>
#include <vector>

#include "modeldb/engine/table_definition.h"
#include "modeldb/odbc/session.h"

namespace modeldb {

/// The rules that hold whoever changes rows, as triggers of the server's, which stay: the first
/// that opens a model makes them.
class RowRules {
 public:
  explicit RowRules(Session& session) : session_(session) {}

  /// See Engine::guard.
  void guard(const RowGuard& rows);
  /// See Engine::keep_links.
  void keep_links(const LinkedRows& rows);

 private:
  struct Rule {
    std::wstring name;
    std::wstring table;
    std::wstring moment;  ///< "BEFORE DELETE"
    std::wstring body;
    std::wstring each = L"FOR EACH ROW";  ///< what stands behind the table
    bool is_owners = false;               ///< it has the rights of who makes it
  };

  /// Makes the triggers that the tables do not have, all at once.
  void make(const std::vector<Rule>& rules);
  [[nodiscard]] std::wstring text_of_missing(std::span<const Rule> rules);
  [[nodiscard]] static std::wstring text_of(const Rule& rule);
  [[nodiscard]] bool has(const std::wstring& name, const std::wstring& table);

  Session& session_;
  bool is_read_ = false;
  std::set<std::wstring> known_;  // "table.trigger", in small letters
};

}  // namespace modeldb
