#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/base/ascii.h"

namespace modeldb {

/// What an engine knows of a statement's result column.
struct ResultColumn {
  std::wstring name;
  std::wstring table;   ///< empty for an expression
  std::wstring origin;  ///< the table's own name for the column
  std::wstring declared_type;
  bool ambiguous = false;  ///< another column has the same name
};

/// Names of a statement's result columns. Names are compared as SQL compares them: the case of
/// Latin letters does not count.
class Columns {
 public:
  /// The columns of the statement `sql`.
  Columns(std::vector<ResultColumn> columns, std::wstring_view sql);
  Columns(const Columns&) = delete;
  Columns& operator=(const Columns&) = delete;

  [[nodiscard]] int size() const { return static_cast<int>(columns_.size()); }
  [[nodiscard]] const std::wstring& name(int column) const { return columns_[column].name; }
  /// The type that the table declares for the column; empty for an expression.
  [[nodiscard]] const std::wstring& declared_type(int column) const {
    return columns_[column].declared_type;
  }

  /// The column called `name`: by the name that the result has for it, or, for a name such as
  /// NodalForces.Magnitude or F.Magnitude, by the table (or its alias in the statement) and column
  /// from which it comes. kItemNotFound: there is none, or the name fits several.
  [[nodiscard]] int find(std::wstring_view name) const;

 private:
  /// A table of the statement's FROM, and the name that it goes by there.
  struct Source {
    std::wstring name;
    std::wstring table;
  };

  static constexpr int kNotFound = -1;
  static constexpr int kAmbiguous = -2;

  [[nodiscard]] int find_by_name(std::wstring_view name) const;
  [[nodiscard]] int find_by_origin(std::wstring_view source, std::wstring_view name) const;
  [[nodiscard]] std::wstring_view table_of(std::wstring_view name) const;
  [[nodiscard]] bool is_joined_with_itself(std::wstring_view table) const;
  [[nodiscard]] std::wstring list() const;

  std::vector<ResultColumn> columns_;
  std::map<std::wstring_view, int, NameOrder> by_name_;
  std::vector<Source> sources_;
  // Whoever reads a row by name mostly reads the columns in their order.
  mutable int expected_next_ = 0;
};

}  // namespace modeldb
