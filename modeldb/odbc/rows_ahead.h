#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "modeldb/engine/fetch_ahead.h"
#include "modeldb/engine/statement.h"

namespace modeldb {

class Session;

/// A value of a row that is in memory.
struct ResultCell {
  bool is_read = false;
  Statement::Type type = Statement::Type::kNull;
  std::int64_t integer = 0;
  double real = 0;
  std::wstring text = {};
  std::vector<std::byte> blob = {};
};

using ResultRow = std::vector<ResultCell>;

/// A query for the rows with one key, "SELECT … WHERE column = ?", as one for the rows with many.
struct QueryByKey {
  std::wstring column;     ///< in small letters, without its table
  std::wstring table;      ///< likewise, where it reads a single one
  std::wstring many_keys;  ///< with the key as first column, up to an array of keys

  /// Nothing when the text, in the server's words, is no such query.
  static std::optional<QueryByKey> of(std::wstring_view sql);
};

/// The rows that were fetched before they were asked for. They are as they were when the first of
/// them was asked for, or its neighbour.
class RowsAhead final : public FetchAhead {
 public:
  explicit RowsAhead(Session& session) : session_(session) {}

  void expect(std::wstring_view column, std::vector<std::int64_t> keys) override;
  void end() noexcept override;
  /// Something may have changed.
  void forget() noexcept {
    fetched_.clear();
    remembered_.clear();
  }
  /// Something may have changed in that table.
  void forget(std::wstring_view table) noexcept;
  /// Sets are looked up for every record that is saved in them: within a transaction they are what
  /// they were.
  void remember(const QueryByKey& query, std::int64_t key, const std::vector<ResultRow>& rows);

  /// The rows of the query with that key, until the next call; null when nobody has said that it
  /// would be asked for, and it is not remembered.
  [[nodiscard]] const std::vector<ResultRow>* find(const QueryByKey& query, std::int64_t key);

 private:
  struct Expected {
    std::vector<std::int64_t> keys;
    std::unordered_map<std::int64_t, std::size_t> places;
  };
  using Rows = std::unordered_map<std::int64_t, std::vector<ResultRow>>;

  Rows fetch(const QueryByKey& query, const Expected& expected, std::size_t first);

  Session& session_;
  std::map<std::wstring, Expected, std::less<>> expected_;
  std::map<std::wstring, Rows, std::less<>> fetched_;  // by the text for many keys
  struct Remembered {
    std::wstring table;
    Rows rows;
  };
  std::map<std::wstring, Remembered, std::less<>> remembered_;  // likewise
};

}  // namespace modeldb
