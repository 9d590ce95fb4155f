#include "modeldb/odbc/posted_changes.h"

#include <random>
#include <string_view>

#include "modeldb/odbc/odbc_statement.h"

namespace modeldb {
namespace {

constexpr std::wstring_view kFirstOpenTransaction =
    L"pg_snapshot_xmin(pg_current_snapshot())::text::bigint";

/// "1,2,3"
std::wstring list_of(const std::vector<long>& keys) {
  std::wstring list;
  for (const long key : keys) {
    if (!list.empty()) list += L',';
    list += std::to_wstring(key);
  }
  return list;
}

std::vector<long> keys_of(std::wstring_view list) {
  std::vector<long> keys;
  long key = 0;
  for (const wchar_t digit : list) {
    if (digit != L',') {
      key = 10 * key + (digit - L'0');
    } else {
      keys.push_back(std::exchange(key, 0));
    }
  }
  if (!list.empty()) keys.push_back(key);
  return keys;
}

}  // namespace

std::int64_t PostedChanges::new_author() {
  std::random_device random;
  return static_cast<std::int64_t>(random()) << 31 ^ random();
}

void PostedChanges::make_table(Session& session) {
  session.run(
      L"CREATE TABLE IF NOT EXISTS orv_changes (ChangeID bigint GENERATED ALWAYS AS IDENTITY, "
      L"TransactionID bigint NOT NULL DEFAULT pg_current_xact_id()::text::bigint, Author bigint "
      L"NOT NULL, MadeAt timestamptz NOT NULL DEFAULT now(), AreDeleted integer NOT NULL, "
      L"EventType integer NOT NULL, Keys text NOT NULL)");
  session.run(
      L"CREATE INDEX IF NOT EXISTS orv_changes_by_transaction ON orv_changes (TransactionID)");
}

void PostedChanges::drop_old() {
  session_.run(L"DELETE FROM orv_changes WHERE MadeAt < now() - interval '1 day'");
}

void PostedChanges::post(std::span<const ChangedRecords> changes) {
  std::wstring rows;
  for (const ChangedRecords& records : changes) {
    rows += (rows.empty() ? L"(" : L", (") + std::to_wstring(author_) +
            (records.are_deleted ? L", 1, " : L", 0, ") + std::to_wstring(records.event_type) +
            L", '" + list_of(records.keys) + L"')";
  }
  if (rows.empty()) return;
  session_.queue().add(L"INSERT INTO orv_changes (Author, AreDeleted, EventType, Keys) VALUES " +
                       rows);
}

void PostedChanges::follow() {
  if (read_up_to_) return;
  const ResultRows row = session_.rows_of(L"SELECT " + std::wstring(kFirstOpenTransaction));
  read_up_to_ = row.integer(0, 0);
}

/// In one way: transactions before the first that is open in the statement's snapshot have ended,
/// and what they committed is seen by it.
std::vector<ChangedRecords> PostedChanges::read() {
  std::vector<ChangedRecords> changes;
  if (!read_up_to_) return changes;
  const ResultRows rows = session_.rows_of(
      L"SELECT orv_end, AreDeleted, EventType, Keys FROM (SELECT " +
      std::wstring(kFirstOpenTransaction) +
      L" AS orv_end) AS orv_now LEFT JOIN orv_changes ON TransactionID < orv_end AND "
      L"TransactionID >= " +
      std::to_wstring(*read_up_to_) + L" AND Author <> " + std::to_wstring(author_) +
      L" ORDER BY TransactionID, ChangeID");
  for (std::size_t row = 0; row < rows.count(); ++row) {
    if (rows.type(row, 1) == ResultRows::Type::kNull) continue;  // nobody has changed anything
    changes.push_back({.are_deleted = rows.integer(row, 1) != 0,
                       .event_type = static_cast<long>(rows.integer(row, 2)),
                       .keys = keys_of(rows.text(row, 3))});
  }
  read_up_to_ = rows.integer(0, 0);
  return changes;
}

}  // namespace modeldb
