#pragma once

#include <orv_modeldb.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "com/ptr.h"
#include "tools/model/database.h"

namespace model {

/// Adds rows to a table by the model's own member for many rows, some thousand with each call.
///
///     Appending nodes(database, "Vertices", {"VertexID", "X"});
///     nodes.add(12); nodes.add(4.5);
///     nodes.finish();
class Appending {
 public:
  /// Sets can stand among the columns, by the name of their key.
  Appending(Database& database, std::string table, const std::vector<std::string>& columns);

  /// The next cell; rows follow one another. The model raises, with a sentence, what is no finite
  /// number.
  void add(double number);
  /// UTF-8. An empty cell is the value of a new record.
  void add(std::string_view text);

  /// Writes what is left.
  void finish();

 private:
  com::Ptr<IModelDatabaseFile> model_;
  std::string table_;
  std::string columns_;
  std::size_t width_;
  std::vector<double> cells_;
  std::vector<std::pair<std::size_t, std::wstring>> texts_;  // by their places among the cells
};

}  // namespace model
