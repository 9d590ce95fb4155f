#pragma once

#include <set>
#include <string>

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
  /// Makes a trigger unless the table has it.
  void make(const std::wstring& name, const std::wstring& table, const std::wstring& moment,
            const std::wstring& body);
  void make_alone(const std::wstring& name, const std::wstring& table, const std::wstring& moment,
                  const std::wstring& body);
  [[nodiscard]] bool has(const std::wstring& name, const std::wstring& table);

  Session& session_;
  bool is_read_ = false;
  std::set<std::wstring> known_;  // "table.trigger", in small letters
};

}  // namespace modeldb
