#pragma once

#include <vector>

#include "host/protocol.h"
#include "modeldb/engine/literal.h"

namespace modeldb {

class RecordStore;

/// The row of an object of the model database's own. The store saves it as it saves a record, but
/// may see it as it is: without the texts by which a record tells its row, and without
/// FileOpHelper.
class OwnRow {
 public:
  OwnRow() = default;
  OwnRow(const OwnRow&) = delete;
  OwnRow& operator=(const OwnRow&) = delete;

  /// What FileOpHelper does.
  virtual void take_part(RecordStore& store, host::FileOp operation) const = 0;

  /// Appends a value for each column of the kind, in their order. Texts are valid until the object
  /// changes. Throws NoNumber as the texts of rows do.
  virtual void append_values(std::vector<Literal>& out) const = 0;

 protected:
  ~OwnRow() = default;
};

}  // namespace modeldb
