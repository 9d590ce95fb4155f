#include "modeldb/odbc/posted_changes.h"

#include <random>
#include <string_view>

#include "modeldb/odbc/odbc_statement.h"

namespace modeldb {
namespace {

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

std::int64_t PostedChanges::first_open_transaction() {
  OdbcStatement row(session_, L"SELECT pg_snapshot_xmin(pg_current_snapshot())::text::bigint",
                    Trust::kHost);
  return row.step() ? row.integer(0) : 0;
}

void PostedChanges::follow() {
  if (!read_up_to_) read_up_to_ = first_open_transaction();
}

std::vector<ChangedRecords> PostedChanges::read() {
  std::vector<ChangedRecords> changes;
  if (!read_up_to_) return changes;
  // Those before it have ended, and what they committed is seen by a statement that begins now.
  const std::int64_t end = first_open_transaction();
  if (end == *read_up_to_) return changes;
  OdbcStatement rows(session_,
                     L"SELECT AreDeleted, EventType, Keys FROM orv_changes WHERE TransactionID >= "
                     L"? AND TransactionID < ? AND Author <> ? ORDER BY TransactionID, ChangeID",
                     Trust::kHost);
  rows.bind(1, *read_up_to_);
  rows.bind(2, end);
  rows.bind(3, author_);
  while (rows.step()) {
    changes.push_back({.are_deleted = rows.integer(0) != 0,
                       .event_type = static_cast<long>(rows.integer(1)),
                       .keys = keys_of(rows.text(2))});
  }
  read_up_to_ = end;
  return changes;
}

}  // namespace modeldb
