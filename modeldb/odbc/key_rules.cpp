#include "modeldb/odbc/key_rules.h"

namespace modeldb {

std::wstring name_of_keys(const TableDefinition& table) {
  return L"orv_keys_of_" + folded_name(table.name);
}

std::wstring name_of_drawing(const TableDefinition& table) {
  return L"orv_draw_keys_of_" + folded_name(table.name);
}

void give_keys(Session& session, const TableDefinition& table) {
  const std::wstring& name = table.name;
  const std::wstring keys = name_of_keys(table);
  const std::wstring function = L"orv_give_key_of_" + name;
  session.run(L"CREATE SEQUENCE " + keys + L" AS integer OWNED BY " + name + L"." + table.key);
  session.run(L"GRANT SELECT ON SEQUENCE " + keys + L" TO PUBLIC");
  // The sequence by its full name, so that the function need not look for it in a path of schemas,
  // which its caller could change. The lock's number: the table's, behind that of model databases.
  const std::wstring number = L"TG_ARGV[0]::pg_catalog.regclass";
  const std::wstring lock = L"((1330796100::bigint << 32) | TG_RELID::bigint)";
  session.run(
      L"CREATE FUNCTION " + function +
      L"() RETURNS trigger LANGUAGE plpgsql SECURITY DEFINER SET search_path = pg_catalog AS $orv$ "
      L"BEGIN IF NEW." +
      table.key +
      L" IS NULL THEN"
      L" PERFORM pg_advisory_lock_shared(" +
      lock +
      L");"
      L" NEW." +
      table.key + L" := nextval(" + number +
      L");"
      L" PERFORM pg_advisory_unlock_shared(" +
      lock +
      L");"
      L" ELSIF NEW." +
      table.key + L" >= coalesce(pg_sequence_last_value(" + number +
      L"), 1) THEN"
      L" PERFORM pg_advisory_lock(" +
      lock +
      L");"
      L" IF NEW." +
      table.key + L" >= coalesce(pg_sequence_last_value(" + number +
      L"), 1) THEN"
      L" PERFORM setval(" +
      number + L", NEW." + table.key +
      L"); END IF;"
      L" PERFORM pg_advisory_unlock(" +
      lock +
      L");"
      L" END IF; RETURN NEW; END $orv$");
  // Sequence and table by their full names, for the same reason.
  session.run(
      L"DO $make$ BEGIN EXECUTE format('CREATE FUNCTION " + name_of_drawing(table) +
      L"(number integer) RETURNS text LANGUAGE plpgsql SECURITY DEFINER SET search_path = "
      L"pg_catalog AS $orv$ DECLARE keys text; lock bigint := (1330796100::bigint << 32) | "
      L"%L::regclass::oid::bigint; BEGIN PERFORM pg_advisory_lock_shared(lock); SELECT "
      L"string_agg(nextval(%L)::text, '','') INTO keys FROM generate_series(1, number); PERFORM "
      L"pg_advisory_unlock_shared(lock); RETURN keys; END $orv$', format('%I.%I', "
      L"current_schema(), '" +
      folded_name(name) + L"'), format('%I.%I', current_schema(), '" + keys + L"')); END $make$");
  session.run(
      L"DO $orv$ BEGIN EXECUTE format('CREATE TRIGGER orv_give_key BEFORE INSERT OR UPDATE "
      L"OF " +
      table.key + L" ON " + name + L" FOR EACH ROW EXECUTE FUNCTION " + function +
      L"(%L)', format('%I.%I', current_schema(), '" + keys + L"')); END $orv$");
}

}  // namespace modeldb
