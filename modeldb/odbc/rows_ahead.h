#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "modeldb/engine/fetch_ahead.h"
#include "modeldb/odbc/loaded_order.h"
#include "modeldb/odbc/reach.h"
#include "modeldb/odbc/result_rows.h"

namespace modeldb {

class RowsAhead;
class Session;

/// A query for the rows with one key, "SELECT … WHERE column = ?", as one for the rows with many.
struct QueryByKey {
  std::wstring column;  ///< in small letters, without its table
  std::wstring table;   ///< likewise, where it reads a single one
  std::wstring path;    ///< the column as the query names it
  std::wstring select;  ///< the query with the key as a first column, up to its condition

  /// Nothing when the text, in the server's words, is no such query.
  static std::optional<QueryByKey> of(std::wstring_view sql);
};

/// Keys from `first` to `last`; none by itself.
struct KeySpan {
  std::int64_t first = 1;
  std::int64_t last = 0;
};

/// Rows that were fetched for keys, some of which may have none.
class KeyedRows {
 public:
  /// The rows of that key are those from `begin` to `end`.
  struct Range {
    std::size_t begin;
    std::size_t end;
  };

  /// All rows of one key, which is not among their columns.
  KeyedRows(std::int64_t key, ResultRows rows);
  /// Rows with their keys in their first column, in any order. Rows of other keys do not count.
  /// Keys in `complete` that are not among `keys` are known to have no rows.
  KeyedRows(Keys keys, ResultRows rows, KeySpan complete = {});

  [[nodiscard]] const ResultRows& rows() const { return rows_; }
  /// The first of the query's own columns.
  [[nodiscard]] std::size_t first_column() const { return first_column_; }
  /// The row of that number within a range.
  [[nodiscard]] std::size_t row(std::size_t number) const { return order_[number]; }
  /// Nothing when it is not known.
  [[nodiscard]] std::optional<Range> find(std::int64_t key);
  /// Whether somebody has seen that the columns are the query's.
  [[nodiscard]] bool is_checked() const { return is_checked_; }
  void set_checked() const { is_checked_ = true; }

 private:
  ResultRows rows_;
  std::size_t first_column_ = 0;
  mutable bool is_checked_ = false;
  Keys keys_;
  KeySpan complete_;
  std::vector<std::uint32_t> begins_;  // of each key, and the end of the last
  std::vector<std::uint32_t> order_;   // of rows by key
  std::size_t next_ = 0;               // behind the key that was found last
};

/// The rows of a query by key that are there before it is asked.
class RowsOfQuery {
 public:
  struct Found {
    std::shared_ptr<const KeyedRows> rows;  ///< null when they are not known
    KeyedRows::Range range;
  };

  RowsOfQuery(RowsAhead& ahead, QueryByKey query);
  RowsOfQuery(const RowsOfQuery&) = delete;
  RowsOfQuery& operator=(const RowsOfQuery&) = delete;
  ~RowsOfQuery();

  [[nodiscard]] const QueryByKey& query() const { return query_; }

  /// Those of one key: remembered, or fetched with others that will be asked for.
  [[nodiscard]] Found find(std::int64_t key);
  /// The row of one key and those next to it, which a transaction may ask for next. They are what
  /// they were until it has changed something by itself.
  [[nodiscard]] Found fetch_on(std::int64_t key);
  /// Sets are looked up for every record that is saved in them: within a transaction they are what
  /// they were.
  void remember(std::int64_t key, std::shared_ptr<KeyedRows> rows);

  /// Which keys will be asked for; null for the end of that.
  void expect(std::shared_ptr<const Keys> keys);
  /// The query for the rows with these keys, with these in the first column.
  [[nodiscard]] std::wstring text_for(const Keys& keys) const;
  /// Rows of keys that will be asked for, if any.
  void take(std::shared_ptr<KeyedRows> rows);
  /// Whether it was asked for any that were expected.
  [[nodiscard]] bool is_asked() const { return is_asked_; }
  void forget() noexcept;
  /// A transaction begins.
  void reset() noexcept;

 private:
  RowsAhead& ahead_;
  const QueryByKey query_;
  std::shared_ptr<const Keys> expected_;
  bool is_asked_ = false;
  std::shared_ptr<KeyedRows> fetched_;
  Reach reach_;
  std::unordered_map<std::int64_t, std::shared_ptr<KeyedRows>> remembered_;
};

/// What is fetched before it is asked for. Rows are as they were when the first of them was asked
/// for, or its neighbour.
class RowsAhead final : public FetchAhead {
 public:
  explicit RowsAhead(Session& session) : session_(session) {}

  void expect(Statement& query, std::wstring_view subject,
              std::span<const std::wstring_view> columns) override;
  void end() noexcept override;
  /// Keys that queries will ask for in the column of that name, in small letters.
  void expect(const std::wstring& column, const std::shared_ptr<const Keys>& keys);
  /// The queries by that column that were asked for expected keys.
  [[nodiscard]] std::vector<RowsOfQuery*> asked_for(std::wstring_view column) const;

  /// In which keys in the column of that name, in small letters, were loaded last.
  [[nodiscard]] LoadedOrder& order_of(const std::wstring& column) { return orders_[column]; }

  /// Something may have changed.
  void forget() noexcept;
  /// Something may have changed in that table.
  void forget(std::wstring_view table) noexcept;
  /// Something may have changed in that table, in rows of whose keys, in that column, nobody asks.
  void forget_beside(std::wstring_view table, std::wstring_view column) noexcept;
  /// A transaction begins.
  void reset() noexcept;

  [[nodiscard]] Session& session() const { return session_; }
  /// A query takes part until it leaves.
  void join(RowsOfQuery& query);
  void leave(RowsOfQuery& query) noexcept;

 private:
  Session& session_;
  std::set<RowsOfQuery*> queries_;
  std::unordered_map<std::wstring, std::shared_ptr<const Keys>> expected_;  // by column
  std::unordered_map<std::wstring, LoadedOrder> orders_;                    // likewise
};

}  // namespace modeldb
