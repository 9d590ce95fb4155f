#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace modeldb {

enum class ColumnType { kInteger, kReal, kText };

struct Column {
  std::wstring name;
  ColumnType type;
  std::int32_t greatest = INT32_MAX;  ///< of integers: the objects hold no greater number
  bool may_be_unknown = false;        ///< the objects may have no value for it
};

/// A table of the model: the rows of one kind, the links of one kind to its sets, or what the model
/// remembers of its origin.
struct TableDefinition {
  std::wstring name;
  std::wstring key;             ///< which gives every row its number; a link table has none
  std::vector<Column> columns;  ///< the others
  std::wstring sets;            ///< of a link table: the table of the sets

  [[nodiscard]] bool is_link_table() const { return !sets.empty(); }
  /// The key of the sets, which a link table's first column refers to.
  [[nodiscard]] const std::wstring& sets_key() const { return columns.front().name; }
  /// The rule by which a link goes when its set goes, and stands for no other.
  [[nodiscard]] std::wstring link_rule() const;
};

/// An index that keeps a statement from reading a whole table.
struct IndexDefinition {
  std::wstring name;
  std::wstring table;
  std::wstring columns;
};

/// Rows that others stand on, by a column of the key's name.
struct RowGuard {
  /// What a statement is told that would do that to such a row.
  static constexpr std::wstring_view kRefusal =
      L"records stand on a vertex that it deletes or renumbers. Delete them, or put them on "
      L"another "
      L"vertex, first";

  std::wstring table;
  std::wstring key;
  std::vector<std::wstring> standing;  ///< the tables of the others
};

/// Rows whose links lie in a table of their own, under a column of the key's name.
struct LinkedRows {
  std::wstring object;  ///< what one of the rows is called
  std::wstring table;
  std::wstring key;
  std::wstring link_table;
};

/// Raises kCannotOpenFile: the table is not what the model needs, and rows could get lost in it.
[[noreturn]] void fail_on_shape(std::wstring_view location, const TableDefinition& table,
                                const std::wstring& fault);

}  // namespace modeldb
