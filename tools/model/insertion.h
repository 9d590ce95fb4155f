#pragma once

#include <string>
#include <string_view>

#include "tools/model/database.h"

namespace model {

/// The number as SQL reads it back. Raises, with a sentence, what is no finite number.
std::string literal(double number);

/// Inserts rows into one table, many with each statement.
///
///     Insertion nodes(database, "Vertices", "VertexID, X");
///     nodes.begin_row(); nodes.add(12); nodes.add(4.5);
///     nodes.finish();
class Insertion {
 public:
  Insertion(Database& database, std::string_view table, std::string_view columns);

  void begin_row();
  /// Whether the next row writes those before it.
  [[nodiscard]] bool is_full() const;
  void add(long number);
  /// Raises, with a sentence, what is no finite number.
  void add(double number);
  /// UTF-8.
  void add(std::string_view text);

  /// Writes what is left. Rows that were begun behind it need another call.
  void finish();

 private:
  void separate();

  Database& database_;
  std::string head_;
  std::string sql_;
  int rows_ = 0;
  bool at_row_start_ = false;
};

}  // namespace model
