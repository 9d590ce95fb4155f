#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "modeldb/engine/statement.h"
#include "modeldb/odbc/driver_manager.h"

namespace modeldb {

/// Rows of a result in memory, one behind the other.
class ResultRows {
 public:
  using Type = Statement::Type;

  /// Begins anew.
  void start(std::size_t columns);
  /// What the result calls its columns; none when nobody has asked.
  void set_labels(std::vector<std::wstring> labels) { labels_ = std::move(labels); }
  [[nodiscard]] const std::vector<std::wstring>& labels() const { return labels_; }
  /// The values of a row are added one after the other.
  void add(std::int64_t value);
  void add(double value);
  void add(std::wstring_view text);
  void add(std::span<const std::byte> bytes);
  void add(std::nullptr_t);

  [[nodiscard]] std::size_t count() const { return columns_ == 0 ? 0 : cells_.size() / columns_; }
  /// Bytes that it takes.
  [[nodiscard]] std::size_t memory() const {
    return cells_.capacity() * sizeof(Cell) + texts_.capacity() * sizeof(wchar_t);
  }

  // A value; as of another type than its own it is 0 or empty, but for a number.
  [[nodiscard]] Type type(std::size_t row, std::size_t column) const {
    return cell(row, column).type;
  }
  [[nodiscard]] std::int64_t integer(std::size_t row, std::size_t column) const;
  [[nodiscard]] double real(std::size_t row, std::size_t column) const;
  [[nodiscard]] std::wstring_view text(std::size_t row, std::size_t column) const;
  [[nodiscard]] std::span<const std::byte> blob(std::size_t row, std::size_t column) const;

 private:
  struct Cell {
    Type type = Type::kNull;
    union {
      std::int64_t integer;
      double real;
      std::size_t place;  // in texts_
    };
    std::size_t size;  // of a text in characters, of bytes in bytes
  };

  [[nodiscard]] const Cell& cell(std::size_t row, std::size_t column) const {
    return cells_.at(row * columns_ + column);
  }

  std::size_t columns_ = 0;
  std::vector<std::wstring> labels_;
  std::vector<Cell> cells_;
  std::wstring texts_;  // bytes too, two in each character
};

/// Where a statement's rows come, one at a time: bound once for all of its runs.
class ResultPlace {
 public:
  /// Binds the columns of these types.
  ResultPlace(SQLHANDLE statement, std::span<const Statement::Type> types);
  ResultPlace(const ResultPlace&) = delete;
  ResultPlace& operator=(const ResultPlace&) = delete;
  ~ResultPlace();

  /// Fetches the next row behind the others; what ODBC answers.
  SQLRETURN fetch(ResultRows& rows);

 private:
  /// Characters of most texts; a longer one is asked for once more.
  static constexpr std::size_t kRoom = 256;

  struct Column {
    Statement::Type type;
    std::int64_t integer = 0;
    double real = 0;
    std::wstring text;
    SQLLEN length = 0;
  };

  [[nodiscard]] bool is_whole(const Column& column) const;
  /// Reads what did not fit.
  SQLRETURN read_long(SQLUSMALLINT number, const Column& column, ResultRows& rows);

  SQLHANDLE statement_;
  std::vector<Column> columns_;
};

}  // namespace modeldb
