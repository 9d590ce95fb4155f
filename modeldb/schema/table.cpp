#include "modeldb/schema/table.h"

#include <limits>
#include <utility>

namespace modeldb {

Table::Table(Kind kind) : kind_(std::move(kind)) {
  constexpr std::wstring_view kComma = L", ";
  std::wstring parameters;
  std::wstring unchanged;
  for (const Column& column : kind_.columns) {
    const wchar_t* const separator = column_list_.empty() ? L"" : L", ";
    column_list_ += separator + column.name;
    assignments_ += separator + column.name + L" = ?";
    parameters.append(kComma).append(L"?");
    unchanged += L" AND " + column.name + L" IS NOT DISTINCT FROM ?";
  }
  const std::wstring where = L" WHERE " + kind_.key + L" = ?";
  insert_ = FixedText(L"INSERT INTO " + kind_.table + L" (" + kind_.key + L", " + column_list_ +
                      L") VALUES (?" + parameters + L")");
  provide_ = FixedText(insert_.text() + merging());
  append_ = FixedText(L"INSERT INTO " + kind_.table + L" (" + column_list_ + L") VALUES (" +
                      parameters.substr(kComma.size()) + L")");
  update_ = FixedText(L"UPDATE " + kind_.table + L" SET " + assignments_ + where);
  update_unchanged_ =
      FixedText(L"UPDATE " + kind_.table + L" SET " + assignments_ + where + unchanged);
  remove_ = FixedText(L"DELETE FROM " + kind_.table + where);
  remove_unchanged_ = FixedText(L"DELETE FROM " + kind_.table + where + unchanged);
  find_ = FixedText(L"SELECT " + column_list_ + L" FROM " + kind_.table + where);
}

StatementLease Table::insertion(Database& database, long id,
                                std::span<const Literal> values) const {
  if (id == 0 && database.engine().gives_keys_unasked()) {
    StatementLease statement = database.prepare(append_);
    statement->bind_all(values);
    return statement;
  }
  StatementLease statement = database.prepare(insert_);
  if (id == 0) {
    statement->bind(1, nullptr);
  } else {
    statement->bind(1, id);
  }
  statement->bind_all(values, 2);
  return statement;
}

long Table::insert(Database& database, long id, std::span<const Literal> values) const {
  const StatementLease statement = insertion(database, id, values);
  statement->step();
  const std::int64_t key = database.engine().last_insert_id();
  if (key > std::numeric_limits<long>::max()) fail_as_used_up(kind_.table);
  return static_cast<long>(key);
}

std::wstring Table::merging() const {
  std::wstring text = L" ON CONFLICT (" + kind_.key + L") DO UPDATE SET ";
  const wchar_t* separator = L"";
  for (const Column& column : kind_.columns) {
    const std::wstring theirs = kind_.table + L"." + column.name;
    std::wstring ours = L"EXCLUDED." + column.name;
    if (column.type == ColumnType::kText) ours = L"NULLIF(" + ours + L", '')";
    text += separator + column.name + L" = COALESCE(" + ours + L", " + theirs + L")";
    separator = L", ";
  }
  return text;
}

void Table::provide(Database& database, long id, std::span<const Literal> values) const {
  if (!database.engine().is_shared()) {
    insert(database, id, values);
    return;
  }
  const StatementLease statement = database.prepare(provide_);
  statement->bind(1, id);
  statement->bind_all(values, 2);
  statement->step();
}

bool Table::update(Database& database, long id, std::span<const Literal> values) const {
  const StatementLease statement = database.prepare(update_);
  statement->bind_all(values);
  statement->bind(static_cast<int>(values.size()) + 1, id);
  return statement->run() != 0;
}

bool Table::update_unchanged(Database& database, long id, std::span<const Literal> values,
                             std::span<const Literal> saved) const {
  const StatementLease statement = database.prepare(update_unchanged_);
  statement->bind_all(values);
  const int key = static_cast<int>(values.size()) + 1;
  statement->bind(key, id);
  statement->bind_all(saved, key + 1);
  return statement->run() != 0;
}

bool Table::remove(Database& database, long id) const { return database.execute(remove_, id) != 0; }

bool Table::remove_unchanged(Database& database, long id, std::span<const Literal> saved) const {
  const StatementLease statement = database.prepare(remove_unchanged_);
  statement->bind(1, id);
  statement->bind_all(saved, 2);
  return statement->run() != 0;
}

StatementLease Table::find(Database& database, long id) const {
  StatementLease statement = database.query(find_, id);
  if (!statement->step()) return {};
  return statement;
}

}  // namespace modeldb
