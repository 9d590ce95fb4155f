#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace modeldb {

class Session;

/// The names of a query's result columns as its author knows them: the server gives them in small
/// letters, and a name of its own to what has none.
class ResultNames {
 public:
  ResultNames(const Session& session, std::wstring_view sql);

  /// Of the column, which the server calls `name`: an alias as the text spells it, a column as the
  /// model does, and any other expression by its text.
  [[nodiscard]] std::wstring of(int column, const std::wstring& name) const;

  /// The table, in small letters, that all columns come from as far as they come from any; empty
  /// when the text does not tell.
  [[nodiscard]] const std::wstring& only_table() const { return only_table_; }

 private:
  struct Item {
    std::wstring text;    // of an expression without an alias; empty for what has a name
    bool is_all = false;  // "*", which stands for several
  };

  void note_aliases(std::wstring_view sql);
  void note_items(std::wstring_view sql);
  void note_only_table(std::wstring_view sql);

  const Session& session_;
  std::map<std::wstring, std::wstring, std::less<>> aliases_;  // by what the server makes of them
  std::vector<Item> items_;
  std::wstring only_table_;
};

}  // namespace modeldb
