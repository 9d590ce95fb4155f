#include "modeldb/model/copy_model.h"

#include <cstddef>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "com/sentence.h"
#include "modeldb/base/failure.h"
#include "modeldb/engine/savepoint.h"
#include "modeldb/schema/definition.h"

namespace modeldb {
namespace {

using Bytes = std::vector<std::byte>;
using Value = std::variant<std::nullptr_t, std::int64_t, double, std::wstring, Bytes>;
using Row = std::vector<Value>;

Value value_of(const Statement& row, int column) {
  switch (row.type(column)) {
    case Statement::Type::kInteger:
      return row.integer(column);
    case Statement::Type::kReal:
      return row.real(column);
    case Statement::Type::kText:
      return std::wstring(row.text(column));
    case Statement::Type::kBlob: {
      const auto bytes = row.blob(column);
      return Bytes(bytes.begin(), bytes.end());
    }
    case Statement::Type::kNull:
      break;
  }
  return nullptr;
}

void bind(Statement& statement, int parameter, const Value& value) {
  if (const auto* const bytes = std::get_if<Bytes>(&value)) {
    statement.bind(parameter, std::span(*bytes));
  } else if (const auto* const text = std::get_if<std::wstring>(&value)) {
    statement.bind(parameter, std::wstring_view(*text));
  } else if (const auto* const real = std::get_if<double>(&value)) {
    statement.bind(parameter, *real);
  } else if (const auto* const integer = std::get_if<std::int64_t>(&value)) {
    statement.bind(parameter, *integer);
  } else {
    statement.bind(parameter, nullptr);
  }
}

std::wstring column_list(const TableDefinition& table) {
  std::wstring list = table.key;
  for (const Column& column : table.columns) list += (list.empty() ? L"" : L", ") + column.name;
  return list;
}

/// "the row 12 of NodalForces"
std::wstring row_name(const TableDefinition& table, const Row& row) {
  const auto* const key = std::get_if<std::int64_t>(&row.front());
  return (table.key.empty() || !key ? L"a row of "
                                    : L"the row " + std::to_wstring(*key) + L" of ") +
         table.name;
}

/// The rows of one table of a model, in an order that is the same everywhere. Those of a table with
/// a key are read a part at a time, since an engine may hold all rows of a query in memory.
class TableRows {
 public:
  TableRows(Database& database, const TableDefinition& table)
      : database_(database), has_key_(!table.key.empty()) {
    const std::wstring columns = column_list(table);
    const std::wstring select = L"SELECT " + columns + L" FROM " + table.name;
    if (has_key_) {
      const std::wstring part = L" ORDER BY " + table.key + L" LIMIT " + std::to_wstring(kPart);
      next_part_ = select + L" WHERE " + table.key + L" > ?" + part;
      rows_ = database_.query(select + part);
    } else {
      rows_ = database_.query(select + L" ORDER BY " + columns);
    }
    row_.resize(table.columns.size() + (has_key_ ? 1 : 0));
  }

  /// The next row; null behind the last.
  const Row* next() {
    if (!step()) return nullptr;
    for (std::size_t i = 0; i < row_.size(); ++i) row_[i] = value_of(*rows_, static_cast<int>(i));
    if (has_key_) last_key_ = rows_->integer(0);
    return &row_;
  }

 private:
  static constexpr int kPart = 10'000;

  bool step() {
    if (has_key_ && read_ == kPart) {
      rows_ = {};
      rows_ = database_.query(next_part_, last_key_);
      read_ = 0;
    }
    ++read_;
    return rows_->step();
  }

  Database& database_;
  const bool has_key_;
  std::wstring next_part_;
  StatementLease rows_;
  Row row_;
  std::int64_t last_key_ = 0;
  int read_ = 0;
};

class Copying {
 public:
  Copying(Model& source, Model& target)
      : source_(*source.database()),
        target_(*target.database()),
        tables_(table_definitions(source.catalogue())) {}

  std::int64_t run() {
    for (const TableDefinition& table : tables_) require_possible(table);
    std::int64_t rows = 0;
    for (const TableDefinition& table : tables_) rows += copy(table);
    for (const TableDefinition& table : tables_) compare(table);
    return rows;
  }

 private:
  void require_possible(const TableDefinition& table) {
    target_.engine().reserve(table);
    const auto there = target_.query(L"SELECT 1 FROM " + table.name + L" LIMIT 1");
    if (there->step()) {
      fail(kIllegalOperation, L"Nothing can be copied into the model " +
                                  quoted(target_.location()) + L": its table " + table.name +
                                  L" has rows. Copy into a new model.");
    }
    const auto row = source_.query(L"SELECT * FROM " + table.name + L" LIMIT 1");
    const auto needed = table.columns.size() + (table.key.empty() ? 0 : 1);
    if (static_cast<std::size_t>(row->columns().size()) > needed) {
      fail(kIllegalOperation,
           L"The model " + quoted(source_.location()) + L" cannot be copied: its table " +
               table.name +
               L" has columns of another program, which would be lost. Copy a model without them.");
    }
  }

  std::int64_t copy(const TableDefinition& table) {
    std::wstring parameters;
    TableRows rows(source_, table);
    std::int64_t count = 0;
    std::int64_t last_key = 0;
    const std::wstring insert = insertion(table);
    const StatementLease statement = target_.prepare(insert);
    while (const Row* const row = rows.next()) {
      for (std::size_t i = 0; i < row->size(); ++i) {
        bind_cell(table, *statement, *row, i);
      }
      try {
        (void)statement->run();
        statement->reset();
      } catch (const com::Error& error) {
        fail(error.result(), not_copied(table, *row) + sentence_of(error));
      }
      if (!table.key.empty()) last_key = std::get<std::int64_t>(row->front());
      ++count;
    }
    if (!table.key.empty()) keep_given_keys(table, last_key);
    return count;
  }

  static std::wstring insertion(const TableDefinition& table) {
    std::wstring parameters = table.key.empty() ? L"" : L"?";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      parameters += parameters.empty() ? L"?" : L", ?";
    }
    return L"INSERT INTO " + table.name + L" (" + column_list(table) + L") VALUES (" + parameters +
           L")";
  }

  void bind_cell(const TableDefinition& table, Statement& statement, const Row& row,
                 std::size_t cell) {
    try {
      bind(statement, static_cast<int>(cell) + 1, row[cell]);
    } catch (const com::Error& error) {
      fail(error.result(), not_copied(table, row) + sentence_of(error));
    }
  }

  [[nodiscard]] std::wstring not_copied(const TableDefinition& table, const Row& row) const {
    return L"Nothing was copied, because " + row_name(table, row) + L" in " +
           quoted(source_.location()) + L" cannot be. ";
  }

  /// A row of the last key that was ever given, which goes at once, so that it is given no more.
  void keep_given_keys(const TableDefinition& table, std::int64_t last_copied) {
    const std::int64_t last_given = source_.engine().last_given_key(table);
    if (last_given <= last_copied) return;
    target_.execute(L"INSERT INTO " + table.name + L" (" + table.key + L") VALUES (?)", last_given);
    target_.execute(L"DELETE FROM " + table.name + L" WHERE " + table.key + L" = ?", last_given);
  }

  void compare(const TableDefinition& table) {
    TableRows originals(source_, table);
    TableRows copies(target_, table);
    for (;;) {
      const Row* const original = originals.next();
      const Row* const copied = copies.next();
      if (!original && !copied) return;
      if (original && copied && *original == *copied) continue;
      fail(kIllegalOperation,
           L"Nothing was copied: " + row_name(table, original ? *original : *copied) +
               L" was not the same any more in " + quoted(source_.location()) + L" and " +
               quoted(target_.location()) +
               L" when all rows were compared. Copy when nobody else works on them.");
    }
  }

  Database& source_;
  Database& target_;
  const std::vector<TableDefinition> tables_;
};

}  // namespace

std::int64_t copy_model(Model& source, std::wstring_view location) {
  Database& original = *source.database();
  if (original.transactions().is_open()) {
    fail(kInvalidTransaction, L"The model " + quoted(original.location()) +
                                  L" cannot be copied while a transaction is open in it. Commit it "
                                  L"or roll it back first.");
  }
  Model target(location);
  try {
    target.history().name_next(L"Copied from " + original.location());
    Savepoint whole(*target.database());
    const std::int64_t rows = Copying(source, target).run();
    whole.release();
    return rows;
  } catch (...) {
    target.database()->discard();
    throw;
  }
}

}  // namespace modeldb
