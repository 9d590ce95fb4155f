#pragma once

#include <vector>

#include "modeldb/engine/literal.h"

namespace modeldb {

/// The row of an object of the model database's own, which the store may see as it is: without the
/// texts by which a record of somebody else tells it.
class OwnRow {
 public:
  OwnRow() = default;
  OwnRow(const OwnRow&) = delete;
  OwnRow& operator=(const OwnRow&) = delete;

  /// Appends a value for each column of the kind, in their order. Texts are valid until the object
  /// changes. Throws NoNumber as the texts of rows do.
  virtual void append_values(std::vector<Literal>& out) const = 0;

 protected:
  ~OwnRow() = default;
};

}  // namespace modeldb
