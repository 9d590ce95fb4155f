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

/// Locks the rows with the keys of a query, as a foreign key does, and raises when one of those
/// that were there at first is gone once the others are done with them. The condition is in the
/// words for which the server takes the index however many keys there are.
std::wstring holding(const RowGuard& rows, const std::wstring& keys) {
  const std::wstring of_keys = L"(SELECT " + rows.key + L" FROM " + rows.table + L" WHERE " +
                               rows.key + L" = ANY (ARRAY(" + keys + L"))";
  return L"IF (WITH orv_seen AS MATERIALIZED " + of_keys + L"), orv_held AS MATERIALIZED " +
         of_keys + L" ORDER BY " + rows.key +
         L" FOR KEY SHARE) SELECT (SELECT count(*) FROM orv_seen) > (SELECT count(*) FROM "
         L"orv_held)) THEN RAISE EXCEPTION USING ERRCODE = '" +
         std::wstring(kTakenAwayState) + L"'; END IF; RETURN NULL;";
}

}  // namespace

/// The tables are those that the statement's author meant by the same names; the owner's rights are
/// for those of the model alone.
std::wstring RowRules::text_of(const Rule& rule) {
  const std::wstring function = rule.name + L"_of_" + rule.table;
  const std::wstring rights =
      rule.is_owners ? L"SECURITY DEFINER SET search_path = %I, pg_temp SET enable_seqscan = off "
                     : L"";
  return L"DO $make$ BEGIN EXECUTE format($text$CREATE OR REPLACE FUNCTION " + function +
         L"() RETURNS trigger LANGUAGE plpgsql " + rights + L"AS $orv$ BEGIN " + rule.body +
         L" END $orv$$text$, current_schema()); END $make$; CREATE OR REPLACE TRIGGER " +
         rule.name + L" " + rule.moment + L" ON " + rule.table + L" " + rule.each +
         L" EXECUTE FUNCTION " + function + L"(); ";
}

void RowRules::guard(const RowGuard& rows) {
  const std::wstring refusal = L"IF " + is_occupied(rows) +
                               L" THEN RAISE EXCEPTION USING ERRCODE = '" +
                               std::wstring(kOccupiedState) + L"'; END IF; ";
  std::vector<Rule> rules = {{.name = L"orv_occupied_row_deleted",
                              .table = rows.table,
                              .moment = L"BEFORE DELETE",
                              .body = refusal + L"RETURN OLD;"},
                             {.name = L"orv_occupied_row_renumbered",
                              .table = rows.table,
                              .moment = L"BEFORE UPDATE OF " + rows.key,
                              .body = L"IF NEW." + rows.key + L" IS DISTINCT FROM OLD." + rows.key +
                                      L" THEN " + refusal + L"END IF; RETURN NEW;"}};
  for (const std::wstring& table : rows.standing) {
    // Of new rows all that a statement brings together: in the order of their keys, so that two
    // programs with the same do not wait for each other.
    rules.push_back({.name = L"orv_row_held",
                     .table = table,
                     .moment = L"AFTER INSERT",
                     .body = holding(rows, L"SELECT " + rows.key + L" FROM orv_new"),
                     .each = L"REFERENCING NEW TABLE AS orv_new FOR EACH STATEMENT",
                     .is_owners = true});
    rules.push_back({.name = L"orv_other_row_held",
                     .table = table,
                     .moment = L"AFTER UPDATE OF " + rows.key,
                     .body = holding(rows, L"SELECT NEW." + rows.key),
                     .each = L"FOR EACH ROW WHEN (NEW." + rows.key + L" IS DISTINCT FROM OLD." +
                             rows.key + L")",
                     .is_owners = true});
  }
  make(rules);
}

void RowRules::keep_links(const LinkedRows& rows) {
  const std::wstring of_the_old = L" WHERE " + rows.key + L" = OLD." + rows.key + L"; RETURN NULL;";
  make({{.name = L"orv_links_deleted",
         .table = rows.table,
         .moment = L"AFTER DELETE",
         .body = L"DELETE FROM " + rows.link_table + of_the_old},
        {.name = L"orv_links_renumbered",
         .table = rows.table,
         .moment = L"AFTER UPDATE OF " + rows.key,
         .body = L"UPDATE " + rows.link_table + L" SET " + rows.key + L" = NEW." + rows.key +
                 of_the_old}});
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

std::wstring RowRules::text_of_missing(std::span<const Rule> rules) {
  std::wstring sql;
  for (const Rule& rule : rules) {
    if (!has(rule.name, rule.table)) sql += text_of(rule);
  }
  return sql;
}

void RowRules::make(const std::vector<Rule>& rules) {
  // Who may write nothing can make none either.
  if (session_.is_read_only() || text_of_missing(rules).empty()) return;
  session_.begin();
  try {
    // Whoever else makes them is waited for.
    session_.run(kMakingLock);
    is_read_ = false;
    const std::wstring sql = text_of_missing(rules);
    if (!sql.empty()) session_.run(sql);
    session_.commit();
  } catch (...) {
    session_.rollback();
    throw;
  }
}

}  // namespace modeldb
