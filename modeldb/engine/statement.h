#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "modeldb/engine/columns.h"
#include "modeldb/engine/literal.h"
#include "modeldb/engine/time_limit.h"

struct sqlite3_stmt;

namespace modeldb {

class Database;

/// Bytes of the longest text that is stored, in UTF-8.
inline constexpr int kMaximumLength = 100'000'000;

/// Who wrote a statement's text, and so what it may do.
enum class Trust {
  kHost,   ///< the model database itself: anything
  kWrite,  ///< a client: reads and changes rows of the model's tables
  kRead,   ///< a client: reads rows of the model's tables
};

/// A prepared statement: bind, step to its rows, read their columns. Parameters are counted from 1,
/// columns from 0. Every member that can fail does so with a sentence: kObjectClosed once the
/// database is closed, otherwise what SQLite answered.
class Statement {
 public:
  Statement(Database& database, std::wstring_view sql, Trust trust);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();

  void bind(int parameter, std::int64_t value);
  void bind(int parameter, int value) { bind(parameter, std::int64_t{value}); }
  void bind(int parameter, long value) { bind(parameter, std::int64_t{value}); }
  void bind(int parameter, double value);
  /// Takes a copy of the text. kInvalidArgument: it is too long, or not wholly made of characters.
  void bind(int parameter, std::wstring_view value);
  void bind(int parameter, const wchar_t* value) { bind(parameter, std::wstring_view(value)); }
  void bind(int parameter, std::nullptr_t);
  void bind(int parameter, const Literal& value);
  void bind_all(std::span<const Literal> values);

  /// From here until it is prepared anew, the statement ends with kTimeout when all its steps since
  /// the last reset take longer together.
  void limit_time(Seconds limit) { time_limit_ = limit; }

  /// Moves to the next row, at first to the first; false when there is none.
  bool step();
  /// Back to before the first row; what is bound stays bound.
  void reset();

  [[nodiscard]] bool is_open() const;
  /// kObjectClosed: the database is closed.
  void require_open() const;

  [[nodiscard]] const Columns& columns();

  /// Bytes of memory that it takes.
  [[nodiscard]] std::size_t memory() const;
  /// Whether somebody has a lease on it.
  [[nodiscard]] bool is_in_use() const { return in_use_; }

  // The value in a column of the current row; meaningful after step() answered true. The text is
  // valid until the next step or reset, or until the column is read as another type.
  enum class Type { kInteger = 1, kReal = 2, kText = 3, kBlob = 4, kNull = 5 };
  [[nodiscard]] Type type(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double real(int column) const;
  [[nodiscard]] std::wstring_view text(int column) const;
  [[nodiscard]] std::span<const std::byte> blob(int column) const;
  /// Size of the value in bytes, a text's as UTF-16.
  [[nodiscard]] std::size_t size(int column) const;

 private:
  friend class StatementLease;

  /// The statement of a database that is still open.
  [[nodiscard]] sqlite3_stmt* live() const;
  void check_bind(int result) const;
  /// The end of a lease.
  void release();

  Database& database_;
  Trust trust_;
  sqlite3_stmt* statement_ = nullptr;
  std::optional<Columns> columns_;
  Seconds time_limit_ = 0;
  std::uint64_t spent_ = 0;  // milliseconds, since the last reset
  bool in_use_ = false;
};

/// The exclusive use of a statement of the cache. At its end the statement is reset, its parameters
/// are cleared, and the cache has it again. Keeps the database object alive, but not open.
class StatementLease {
 public:
  StatementLease() = default;
  StatementLease(std::shared_ptr<Database> database, Statement& cached);
  StatementLease(std::shared_ptr<Database> database, std::unique_ptr<Statement> own);
  StatementLease(StatementLease&& other) noexcept;
  StatementLease& operator=(StatementLease other) noexcept;
  ~StatementLease();

  Statement* operator->() const { return statement_; }
  Statement& operator*() const { return *statement_; }
  explicit operator bool() const { return statement_ != nullptr; }

 private:
  std::shared_ptr<Database> database_;
  std::unique_ptr<Statement> own_;  // when the cached statement was in use already
  Statement* statement_ = nullptr;
};

}  // namespace modeldb
