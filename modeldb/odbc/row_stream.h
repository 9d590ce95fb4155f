#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "modeldb/odbc/direct_query.h"
#include "modeldb/odbc/rows_ahead.h"

namespace modeldb {

class Session;

/// The rows of a query, once, from the first to the last. They come some at a time: while these
/// are read, the next are fetched in a thread of its own, and with them the rows that other queries
/// will ask for by their keys. All are of the moment at which it was made, but for those of the
/// other queries.
class RowStream {
 public:
  /// Whole numbers in a column are keys that will be asked for in a column of that name.
  struct KeyColumn {
    std::wstring name;  ///< in small letters
    std::size_t place;
  };
  /// The text of a query, with a handle to which its parameters are bound.
  struct Query {
    DirectQuery runner;
    std::wstring text;
    Seconds limit;  ///< 0 for none
  };

  /// Runs it. Throws QueryFailure.
  RowStream(Session& session, Query query, std::vector<KeyColumn> columns);
  RowStream(const RowStream&) = delete;
  RowStream& operator=(const RowStream&) = delete;
  ~RowStream();

  /// The next rows; none at the end. Throws QueryFailure.
  [[nodiscard]] ResultRows next();
  /// Fetches those behind them while they are read: when the first of them was read, so that it is
  /// known which queries ask for keys.
  void go_on();

  /// Fetches all that are left. Before anything that its cursor would not survive.
  void fetch_rest() noexcept;
  /// What other queries will ask for may have changed.
  void forget_ahead() noexcept;
  void forget_ahead(const RowsOfQuery& query) noexcept;
  /// The connection ends, and all on the server with it.
  void abandon() noexcept;

 private:
  /// Rows of a query that will be asked for, by keys in a column.
  struct Ahead {
    RowsOfQuery* query;
    std::size_t column;  // in columns_
    std::shared_ptr<KeyedRows> rows;
  };
  struct Batch {
    ResultRows rows;
    std::vector<std::shared_ptr<const Keys>> keys;  // by column
    std::vector<Ahead> ahead;
    std::exception_ptr failure;
  };

  [[nodiscard]] std::vector<Ahead> wanted() const;
  void fetch(std::size_t count, Batch& batch) noexcept;
  void fetch_all(std::size_t count, Batch& batch);
  void close() noexcept;

  Session& session_;
  const std::vector<KeyColumn> columns_;
  const std::wstring cursor_;
  std::optional<DirectQuery> runner_;
  bool is_open_ = false;       // on the server
  bool is_complete_ = false;   // nothing is behind what was fetched
  std::optional<Batch> next_;  // fetched, or on their way
  std::optional<Batch> rest_;  // behind those
};

}  // namespace modeldb
