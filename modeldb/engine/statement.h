#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/engine/columns.h"
#include "modeldb/engine/literal.h"

namespace modeldb {

class Database;

/// How long a client's statement may run, in seconds; 0 for as long as it takes.
using Seconds = long;
inline constexpr Seconds kDefaultTimeLimit = 30;

/// Who wrote a statement's text, and so what it may do.
enum class Trust {
  kHost,   ///< the model database itself: anything
  kWrite,  ///< a client: reads and changes rows of the model's tables
  kRead,   ///< a client: reads rows of the model's tables
};

/// A prepared statement of an engine: bind, step to its rows, read their columns. Parameters are
/// counted from 1, columns from 0. Every member that can fail does so with a sentence:
/// kObjectClosed once the database is closed, otherwise what the engine answered.
class Statement {
 public:
  Statement() = default;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  virtual ~Statement() = default;

  virtual void bind(int parameter, std::int64_t value) = 0;
  virtual void bind(int parameter, double value) = 0;
  /// Takes a copy of the text. kInvalidArgument: it is too long, or not wholly made of characters.
  virtual void bind(int parameter, std::wstring_view value) = 0;
  virtual void bind(int parameter, std::nullptr_t) = 0;
  /// The bytes stay where they are until the statement has ended or has others.
  virtual void bind(int parameter, std::span<const std::byte> bytes) = 0;
  /// Binds `values` to the parameters from `first` on.
  virtual void bind_all(std::span<const Literal> values, int first) = 0;
  void bind_all(std::span<const Literal> values) { bind_all(values, 1); }

  void bind(int parameter, const Literal& value) {
    std::visit([&](auto held) { bind(parameter, held); }, value);
  }
  void bind(int parameter, int value) { bind(parameter, std::int64_t{value}); }
  void bind(int parameter, long value) { bind(parameter, std::int64_t{value}); }
  void bind(int parameter, const wchar_t* value) { bind(parameter, std::wstring_view(value)); }
  void bind(int parameter, const std::wstring& value) { bind(parameter, std::wstring_view(value)); }

  /// From here until it is prepared anew, the statement ends with kTimeout when all its steps since
  /// the last reset take longer together.
  virtual void limit_time(Seconds limit) = 0;

  /// Moves to the next row, at first to the first; false when there is none.
  virtual bool step() = 0;
  /// Steps to the end; returns how many rows it changed.
  virtual std::int64_t run() = 0;
  /// Back to before the first row; what is bound stays bound.
  virtual void reset() = 0;

  [[nodiscard]] virtual bool is_open() const = 0;
  /// kObjectClosed: the database is closed.
  virtual void require_open() const = 0;

  [[nodiscard]] const Columns& columns();

  /// Bytes of memory that it takes.
  [[nodiscard]] virtual std::size_t memory() const = 0;
  /// Whether somebody has a lease on it.
  [[nodiscard]] bool is_in_use() const { return in_use_; }

  // The value in a column of the current row; meaningful after step() answered true. The text is
  // valid until the next step or reset, or until the column is read as another type.
  enum class Type { kInteger, kReal, kText, kBlob, kNull };
  [[nodiscard]] virtual Type type(int column) const = 0;
  [[nodiscard]] virtual std::int64_t integer(int column) const = 0;
  [[nodiscard]] virtual double real(int column) const = 0;
  [[nodiscard]] virtual std::wstring_view text(int column) const = 0;
  [[nodiscard]] virtual std::span<const std::byte> blob(int column) const = 0;
  /// Size of the value in bytes, a text's as UTF-16.
  [[nodiscard]] std::size_t size(int column) const;

 protected:
  /// The columns of its rows, and its text, in which tables may have got other names.
  [[nodiscard]] virtual std::vector<ResultColumn> describe_columns() const = 0;
  [[nodiscard]] virtual std::wstring sql() const = 0;
  /// The end of its use: it is reset, its parameters are cleared, its time is not limited.
  virtual void clear() noexcept = 0;
  /// They may be others from now on.
  void forget_columns() noexcept { columns_.reset(); }

 private:
  friend class StatementLease;

  std::optional<Columns> columns_;
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
  /// Whether the statement is no part of the cache and ends with the lease.
  [[nodiscard]] bool is_own() const { return own_ != nullptr; }

 private:
  std::shared_ptr<Database> database_;
  std::unique_ptr<Statement> own_;  // when the cached statement was in use already
  Statement* statement_ = nullptr;
};

}  // namespace modeldb
