#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "modeldb/engine/statement.h"
#include "modeldb/sqlite/row_bytes.h"

struct sqlite3_stmt;

namespace modeldb {

class SqliteFile;

/// Bytes of the longest text that is stored, in UTF-8.
inline constexpr int kMaximumLength = 100'000'000;

/// A statement of SQLite's.
class SqliteStatement final : public Statement {
 public:
  SqliteStatement(SqliteFile& file, std::wstring_view sql, Trust trust);
  ~SqliteStatement() override;

  using Statement::bind;
  using Statement::bind_all;
  void bind(int parameter, std::int64_t value) override;
  void bind(int parameter, double value) override;
  void bind(int parameter, std::wstring_view value) override;
  void bind(int parameter, std::nullptr_t) override;
  void bind(int parameter, std::span<const std::byte> bytes) override;
  /// What the value refers to stays where it is, as for bytes.
  void bind(int parameter, const RowValue& value);
  void bind_all(std::span<const Literal> values, int first) override;

  void limit_time(Seconds limit) override { time_limit_ = limit; }

  bool step() override;
  std::int64_t run() override;
  void reset() override;

  [[nodiscard]] bool is_open() const override;
  void require_open() const override;
  [[nodiscard]] std::size_t memory() const override;

  [[nodiscard]] Type type(int column) const override;
  [[nodiscard]] std::int64_t integer(int column) const override;
  [[nodiscard]] double real(int column) const override;
  [[nodiscard]] std::wstring_view text(int column) const override;
  [[nodiscard]] std::span<const std::byte> blob(int column) const override;
  /// What stands there, whatever its type; valid as long as a text is.
  [[nodiscard]] RowValue value(int column) const;

 protected:
  [[nodiscard]] std::vector<ResultColumn> describe_columns() const override;
  [[nodiscard]] std::wstring sql() const override;
  void clear() noexcept override;

 private:
  /// The statement of a file that is still open.
  [[nodiscard]] sqlite3_stmt* live() const;
  void check_bind(int result) const;
  /// The text with its values.
  [[nodiscard]] std::wstring expanded_sql() const;

  SqliteFile& file_;
  const Trust trust_;
  sqlite3_stmt* statement_ = nullptr;
  Seconds time_limit_ = 0;
  std::uint64_t spent_ = 0;  // milliseconds, since the last reset
};

}  // namespace modeldb
