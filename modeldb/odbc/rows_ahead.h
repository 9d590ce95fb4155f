#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "modeldb/engine/fetch_ahead.h"
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

/// Keys that will be asked for, mostly in this order.
class ExpectedKeys {
 public:
  explicit ExpectedKeys(std::vector<std::int64_t> keys) : keys_(std::move(keys)) {}

  /// Some keys from this one on, in their order and none twice; none when nobody expects it.
  [[nodiscard]] std::vector<std::int64_t> from(std::int64_t key);

 private:
  [[nodiscard]] std::size_t place_of(std::int64_t key);

  std::vector<std::int64_t> keys_;
  std::vector<std::int64_t> sorted_;  // once a key was asked for out of turn
  std::size_t next_ = 0;              // behind those that were given last
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
  /// Rows with their keys in their first column, in any order; `keys` are sorted. Rows of other
  /// keys do not count. Keys in `complete` that are not among `keys` are known to have no rows.
  KeyedRows(std::vector<std::int64_t> keys, ResultRows rows, KeySpan complete = {});

  [[nodiscard]] const ResultRows& rows() const { return rows_; }
  /// The first of the query's own columns.
  [[nodiscard]] std::size_t first_column() const { return first_column_; }
  /// The row of that number within a range.
  [[nodiscard]] std::size_t row(std::size_t number) const { return order_[number]; }
  /// Nothing when it is not known.
  [[nodiscard]] std::optional<Range> find(std::int64_t key);

 private:
  ResultRows rows_;
  std::size_t first_column_ = 0;
  std::vector<std::int64_t> keys_;
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
  void expect(std::shared_ptr<ExpectedKeys> keys);
  void forget() noexcept;
  /// A transaction begins.
  void reset() noexcept;

 private:
  [[nodiscard]] std::shared_ptr<KeyedRows> fetch(std::vector<std::int64_t> keys);

  RowsAhead& ahead_;
  const QueryByKey query_;
  std::shared_ptr<ExpectedKeys> expected_;
  std::shared_ptr<KeyedRows> fetched_;
  Reach reach_;
  std::unordered_map<std::int64_t, std::shared_ptr<KeyedRows>> remembered_;
};

/// What is fetched before it is asked for. Rows are as they were when the first of them was asked
/// for, or its neighbour.
class RowsAhead final : public FetchAhead {
 public:
  explicit RowsAhead(Session& session) : session_(session) {}

  void expect(std::wstring_view column, Statement& query) override;
  void end() noexcept override;

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
  void leave(RowsOfQuery& query) noexcept { queries_.erase(&query); }

 private:
  Session& session_;
  std::set<RowsOfQuery*> queries_;
  std::unordered_map<std::wstring, std::shared_ptr<ExpectedKeys>> expected_;  // by column
};

}  // namespace modeldb
