#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "modeldb/engine/statement.h"
#include "modeldb/engine/text_shape.h"

namespace modeldb {

/// What became of a client's text.
struct TextResult {
  StatementLease query;           ///< empty unless the text is a query
  std::int64_t changed_rows = 0;  ///< by a text that is none
};

/// Runs texts of clients, as they reach ADO's objects. Only SELECT, INSERT, UPDATE and DELETE on
/// the model's tables pass (Trust::kRead: SELECT alone), one statement at a time, without
/// parameters; a refused text fails with kPermissionDenied before anything is done. Tables whose
/// names begin with "orv_" are the model database's own, and can only be read.
class ClientTexts {
 public:
  explicit ClientTexts(Database& database) : database_(database) {}
  ClientTexts(const ClientTexts&) = delete;
  ClientTexts& operator=(const ClientTexts&) = delete;

  /// How long a text may run that is given no limit of its own.
  [[nodiscard]] Seconds time_limit() const { return time_limit_; }
  void set_time_limit(Seconds limit);

  /// A query comes back with its literals bound, ready for step. Anything else is run at once;
  /// BEGIN, COMMIT and ROLLBACK TRANSACTION are those of the database's transactions.
  TextResult execute(std::wstring_view text, Trust trust, Seconds time_limit);

 private:
  // A record that is saved or loaded runs three texts, each of a shape of its own.
  static constexpr std::size_t kMostShapes = 8;

  /// The shape of the text, if it is known; the text's values then are in `read_`.
  TextShape* find_shape(std::wstring_view text);
  /// Keeps the shape of the text, which was read last, if it has one.
  TextShape* keep_shape(std::wstring_view text, TextKind kind);
  /// Runs the text, which was read last: `shape` is its own, or null.
  TextResult run(std::wstring_view text, TextKind kind, TextShape* shape, Seconds time_limit);
  StatementLease prepare(std::wstring_view text, Trust author, TextShape* shape,
                         Seconds time_limit);
  /// Runs a change, in a transaction of its own unless one is open.
  std::int64_t run_change(Statement& statement);

  Database& database_;
  Seconds time_limit_ = kDefaultTimeLimit;
  ReadText read_;  // the text that was read last; kept for its capacity
  std::vector<TextShape> shapes_;
  std::size_t next_shape_ = 0;  // which one gives way to another
};

}  // namespace modeldb
