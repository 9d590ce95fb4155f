#include "modeldb/odbc/row_rules.h"

#include "modeldb/odbc/odbc_statement.h"

namespace modeldb {
namespace {

/// A condition that holds when others stand on the row that a statement is about to change.
std::wstring is_occupied(const RowGuard& rows) {
  std::wstring condition;
  for (const std::wstring& table : rows.standing) {
    condition += (condition.empty() ? L"EXISTS (SELECT 1 FROM " : L" OR EXISTS (SELECT 1 FROM ") +
                 table + L" WHERE " + rows.key + L" = OLD." + rows.key + L")";
  }
  return condition.empty() ? L"FALSE" : condition;
}

}  // namespace

void RowRules::guard(const RowGuard& rows) {
  const std::wstring refusal = L"IF " + is_occupied(rows) +
                               L" THEN RAISE EXCEPTION USING ERRCODE = '" +
                               std::wstring(kOccupiedState) + L"'; END IF; ";
  make(L"orv_occupied_row_deleted", rows.table, L"BEFORE DELETE", refusal + L"RETURN OLD;");
  make(L"orv_occupied_row_renumbered", rows.table, L"BEFORE UPDATE OF " + rows.key,
       L"IF NEW." + rows.key + L" IS DISTINCT FROM OLD." + rows.key + L" THEN " + refusal +
           L"END IF; RETURN NEW;");
}

void RowRules::keep_links(const LinkedRows& rows) {
  const std::wstring of_the_old = L" WHERE " + rows.key + L" = OLD." + rows.key + L"; RETURN NULL;";
  make(L"orv_links_deleted", rows.table, L"AFTER DELETE",
       L"DELETE FROM " + rows.link_table + of_the_old);
  make(L"orv_links_renumbered", rows.table, L"AFTER UPDATE OF " + rows.key,
       L"UPDATE " + rows.link_table + L" SET " + rows.key + L" = NEW." + rows.key + of_the_old);
}

bool RowRules::has(const std::wstring& name, const std::wstring& table) {
  if (!is_read_) {
    OdbcStatement rows(session_,
                       L"SELECT c.relname || '.' || t.tgname FROM pg_catalog.pg_trigger t JOIN "
                       L"pg_catalog.pg_class c ON c.oid = t.tgrelid WHERE c.relnamespace = "
                       L"current_schema()::regnamespace AND NOT t.tgisinternal",
                       Trust::kHost);
    while (rows.step()) known_.emplace(rows.text(0));
    is_read_ = true;
  }
  return known_.contains(folded_name(table) + L"." + name);
}

void RowRules::make(const std::wstring& name, const std::wstring& table, const std::wstring& moment,
                    const std::wstring& body) {
  // Who may write nothing can make none either.
  if (has(name, table) || session_.is_read_only()) return;
  session_.begin();
  try {
    make_alone(name, table, moment, body);
    session_.commit();
  } catch (...) {
    session_.rollback();
    throw;
  }
}

/// In a transaction: whoever else makes it is waited for.
void RowRules::make_alone(const std::wstring& name, const std::wstring& table,
                          const std::wstring& moment, const std::wstring& body) {
  session_.run(kMakingLock);
  is_read_ = false;
  if (has(name, table)) return;
  const std::wstring function = name + L"_of_" + table;
  // The tables are those that the statement's author meant by the same names.
  session_.run(L"CREATE OR REPLACE FUNCTION " + function +
               L"() RETURNS trigger LANGUAGE plpgsql AS $orv$ BEGIN " + body + L" END $orv$");
  session_.run(L"CREATE OR REPLACE TRIGGER " + name + L" " + moment + L" ON " + table +
               L" FOR EACH ROW EXECUTE FUNCTION " + function + L"()");
}

}  // namespace modeldb
