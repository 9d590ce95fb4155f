#include "modeldb/schema/table.h"

#include <limits>
#include <utility>

#include "modeldb/engine/sqlite_failure.h"

namespace modeldb {
namespace {

/// Runs a statement that changes rows; returns whether it changed any.
bool changes_rows(Database& database, Statement& statement) {
  const std::int64_t before = database.total_changes();
  statement.step();
  return database.total_changes() != before;
}

void bind_values(Statement& statement, int first, std::span<const Literal> values) {
  for (const Literal& value : values) statement.bind(first++, value);
}

}  // namespace

Table::Table(Kind kind) : kind_(std::move(kind)) {
  std::wstring parameters;
  for (const Column& column : kind_.columns) {
    const wchar_t* const separator = column_list_.empty() ? L"" : L", ";
    column_list_ += separator + column.name;
    assignments_ += separator + column.name + L" = ?";
    parameters += L", ?";
  }
  const std::wstring where = L" WHERE " + kind_.key + L" = ?";
  insert_ = L"INSERT INTO " + kind_.table + L" (" + kind_.key + L", " + column_list_ +
            L") VALUES (?" + parameters + L")";
  update_ = L"UPDATE " + kind_.table + L" SET " + assignments_ + where;
  remove_ = L"DELETE FROM " + kind_.table + where;
  find_ = L"SELECT " + column_list_ + L" FROM " + kind_.table + where;
}

long Table::insert(Database& database, long id, std::span<const Literal> values) const {
  const StatementLease statement = database.prepare(insert_);
  if (id == 0) {
    statement->bind(1, nullptr);
  } else {
    statement->bind(1, id);
  }
  bind_values(*statement, 2, values);
  statement->step();
  const std::int64_t key = database.last_insert_id();
  if (key > std::numeric_limits<long>::max()) fail_as_used_up(kind_.table);
  return static_cast<long>(key);
}

bool Table::update(Database& database, long id, std::span<const Literal> values) const {
  const StatementLease statement = database.prepare(update_);
  bind_values(*statement, 1, values);
  statement->bind(static_cast<int>(values.size()) + 1, id);
  return changes_rows(database, *statement);
}

bool Table::remove(Database& database, long id) const {
  const StatementLease statement = database.query(remove_, id);
  return changes_rows(database, *statement);
}

StatementLease Table::find(Database& database, long id) const {
  StatementLease statement = database.query(find_, id);
  if (!statement->step()) return {};
  return statement;
}

}  // namespace modeldb
