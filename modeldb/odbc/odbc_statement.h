#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "modeldb/engine/statement.h"
#include "modeldb/odbc/driver_manager.h"
#include "modeldb/odbc/result_rows.h"
#include "modeldb/odbc/row_stream.h"
#include "modeldb/odbc/rows_ahead.h"
#include "modeldb/odbc/write_queue.h"

namespace modeldb {

class Session;

/// A statement of the server's. Its rows are all here once it has run, so that none that is half
/// read keeps anybody waiting.
class OdbcStatement final : public Statement {
 public:
  OdbcStatement(Session& session, std::wstring_view sql, Trust trust);
  ~OdbcStatement() override;

  using Statement::bind;
  using Statement::bind_all;
  void bind(int parameter, std::int64_t value) override;
  void bind(int parameter, double value) override;
  void bind(int parameter, std::wstring_view value) override;
  void bind(int parameter, std::nullptr_t) override;
  /// kInvalidArgument: no table of a model on a server has room for bytes.
  void bind(int parameter, std::span<const std::byte> bytes) override;
  void bind_all(std::span<const Literal> values, int first) override;

  void limit_time(Seconds limit) override;

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

  /// Runs a query so that its rows come while they are read, once. It stays before the first of
  /// them, even if it is reset once. The sentence of a failure speaks of `subject` instead of the
  /// text, unless that is empty.
  void stream(std::vector<RowStream::KeyColumn> keys, std::wstring_view subject);

  /// The connection ends, and the handle with it.
  void abandon() noexcept;

 protected:
  [[nodiscard]] std::vector<ResultColumn> describe_columns() const override;
  [[nodiscard]] std::wstring sql() const override { return sql_; }
  void clear() noexcept override;

 private:
  /// What a parameter is bound to, at an address that stays.
  struct Parameter {
    Type type = Type::kNull;
    std::int64_t integer = 0;
    double real = 0;
    std::wstring text;
    SQLLEN length = SQL_NULL_DATA;
    bool is_told = false;  // ODBC knows of what type it is, and where
  };
  void check(SQLRETURN result) const;
  /// The text with its values, as its author knows it.
  [[nodiscard]] std::wstring expanded_sql() const;
  [[nodiscard]] static std::wstring shown(const Parameter& parameter);
  Parameter& parameter(int number, Type type);
  static SQLRETURN tell(SQLHANDLE statement, int number, Parameter& parameter);
  void prepare();
  void execute();
  SQLRETURN send();
  [[nodiscard]] bool finds_rows_ahead();
  [[nodiscard]] bool finds_rows_behind();
  [[nodiscard]] bool asks_for_a_row() const;
  [[nodiscard]] bool is_queued();
  [[nodiscard]] bool has_inserted() const;
  [[nodiscard]] std::span<const RowValue> row_values();
  [[nodiscard]] bool looks_up_a_set() const;
  void look_up_a_set();
  /// The types of the result's columns, once there is a result.
  void describe();
  void read_rows();
  void read_on();
  [[noreturn]] void fail_with(const QueryFailure& failure);
  void take(RowsOfQuery::Found found);
  void require_columns(const ResultRows& rows, std::size_t first) const;
  [[nodiscard]] const ResultRows& rows() const { return ahead_.rows ? ahead_.rows->rows() : own_; }
  /// Of a column as the caller counts.
  [[nodiscard]] std::size_t place(int column) const;
  void forget_rows() noexcept;

  Session& session_;
  const std::wstring sql_;   // as it was given
  const std::wstring text_;  // as the server gets it
  const bool gives_key_;
  const bool only_reads_;
  std::optional<RowsOfQuery> by_key_;
  const std::optional<RowInsertion> insertion_;
  const std::optional<RowChange> change_;
  StatementHandle handle_;
  std::deque<Parameter> parameters_;
  std::vector<Type> types_;
  std::vector<std::wstring> labels_;
  std::unique_ptr<ResultPlace> result_place_;
  bool is_described_ = false;
  bool has_run_ = false;
  bool has_rows_ = false;
  bool has_run_ahead_ = false;  // for stream
  bool is_executed_ = false;    // ODBC has to be told when that is over
  Seconds limit_ = 0;
  Seconds limit_told_ = 0;
  ResultRows own_;
  std::unique_ptr<RowStream> stream_;  // of further ones
  std::wstring subject_;               // of its sentences
  RowsOfQuery::Found ahead_{};         // its rows, when they were fetched ahead
  std::size_t row_ = 0;                // at which it stands
  std::size_t next_ = 0;               // of its rows, or of those ahead
  RowPlan* insertion_plan_ = nullptr;
  ChangePlan* change_plan_ = nullptr;
  bool is_planned_ = false;  // tables are known once a model is open
  std::vector<RowValue> row_values_;
  std::optional<std::int64_t> queued_rows_;  // that it changed, when it did not go to the server
};

}  // namespace modeldb
