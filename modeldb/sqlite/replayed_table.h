#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "modeldb/sqlite/row_bytes.h"
#include "modeldb/sqlite/sqlite_file.h"
#include "modeldb/sqlite/sqlite_statement.h"

namespace modeldb {

/// How a table of the file is made, as far as it matters for putting rows back.
struct TableLayout {
  /// Its columns in their order, between quotation marks.
  std::vector<std::wstring> columns;
  /// The name of SQLite's number of a row; empty in a table without one.
  std::wstring row_number;
  /// Whether a column is that number, so that it is the row's name for everybody.
  bool has_key = false;
  /// Columns whose values cannot be told from the default of a column that was added later.
  std::vector<bool> has_default;
  /// Why changes of its rows cannot be taken back; empty when they can.
  std::wstring fault;

  [[nodiscard]] bool any_has_default() const;
  /// The columns with commas between them.
  [[nodiscard]] std::wstring column_list() const;

  static TableLayout read(SqliteFile& file, const std::wstring& table);
};

/// Puts the rows of one table back as they were before or after a change. Raises
/// kIntegrityViolation, with a sentence that names the row, when the row at hand is not as the
/// change left it: then somebody else has changed it since.
class ReplayedTable {
 public:
  ReplayedTable(SqliteFile& file, std::wstring name, TableLayout layout);

  void remove(std::int64_t key, const std::vector<RowValue>& values);
  void insert(std::int64_t key, const std::vector<RowValue>& values);
  void update(std::int64_t key, const std::vector<RowValue>& values, std::int64_t new_key,
              const std::vector<RowValue>& new_values);

 private:
  using Own = std::unique_ptr<SqliteStatement>;

  /// The statement, ready for bind; `sql` gives its text at the first use.
  template <class Sql>
  SqliteStatement& ready(Own& statement, Sql&& sql);
  static void run(SqliteStatement& statement);
  /// The number of the row with these values: the one of that number or, where no column is the
  /// number, any that has them, since other programs may have numbered the rows anew.
  std::int64_t require_row(std::int64_t key, const std::vector<RowValue>& values);
  std::optional<std::int64_t> find_alike(const std::vector<RowValue>& values);
  /// Moves the statement find_ to the row; false when there is none.
  bool go_to_row(std::int64_t key);
  bool has_row(std::int64_t key);
  [[nodiscard]] bool has_row_numbers() const { return !layout_.row_number.empty(); }
  void never_give_again(std::int64_t key);
  /// "A" IS ?1 AND "B" IS ?2
  [[nodiscard]] std::wstring each_column(const wchar_t* operation, const wchar_t* between) const;
  [[nodiscard]] int size() const { return static_cast<int>(layout_.columns.size()); }
  [[noreturn]] void fail_on_row(std::int64_t key, const std::vector<RowValue>& values,
                                const std::wstring& words) const;

  SqliteFile& file_;
  std::wstring name_;
  TableLayout layout_;
  std::wstring quoted_name_;
  Own find_, find_alike_, remove_, insert_, insert_anywhere_, update_, sequence_;
};

}  // namespace modeldb
