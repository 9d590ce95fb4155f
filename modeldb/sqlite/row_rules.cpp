#include "modeldb/sqlite/row_rules.h"

#include <string>

#include "modeldb/sqlite/sqlite_statement.h"

namespace modeldb {
namespace {

void execute(SqliteFile& file, const std::wstring& text) {
  SqliteStatement(file, text, Trust::kHost).run();
}

/// A condition that holds when others stand on the row that a statement is about to change.
std::wstring is_occupied(const RowGuard& rows) {
  std::wstring condition;
  for (const std::wstring& table : rows.standing) {
    condition += (condition.empty() ? L"EXISTS (SELECT 1 FROM " : L" OR EXISTS (SELECT 1 FROM ") +
                 table + L" WHERE " + rows.key + L" = OLD." + rows.key + L")";
  }
  return condition.empty() ? L"0" : condition;
}

}  // namespace

void guard_rows(SqliteFile& file, const RowGuard& rows) {
  const std::wstring refusal =
      L" BEGIN SELECT RAISE(ABORT, '" + std::wstring(RowGuard::kRefusal) + L"'); END";
  const std::wstring occupied = is_occupied(rows);
  execute(file, L"CREATE TEMP TRIGGER orv_occupied_vertex_deleted BEFORE DELETE ON " + rows.table +
                    L" WHEN " + occupied + refusal);
  execute(file, L"CREATE TEMP TRIGGER orv_occupied_vertex_renumbered BEFORE UPDATE OF " + rows.key +
                    L" ON " + rows.table + L" WHEN NEW." + rows.key + L" IS NOT OLD." + rows.key +
                    L" AND (" + occupied + L")" + refusal);
}

void keep_links(SqliteFile& file, const LinkedRows& rows) {
  const std::wstring of_the_old = L" WHERE " + rows.key + L" = OLD." + rows.key + L"; END";
  execute(file, L"CREATE TEMP TRIGGER orv_" + rows.object + L"_deleted AFTER DELETE ON " +
                    rows.table + L" BEGIN DELETE FROM " + rows.link_table + of_the_old);
  execute(file, L"CREATE TEMP TRIGGER orv_" + rows.object + L"_renumbered AFTER UPDATE OF " +
                    rows.key + L" ON " + rows.table + L" WHEN NEW." + rows.key + L" IS NOT OLD." +
                    rows.key + L" BEGIN UPDATE " + rows.link_table + L" SET " + rows.key +
                    L" = NEW." + rows.key + of_the_old);
}

}  // namespace modeldb
