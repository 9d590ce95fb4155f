#pragma once

#include <string>
#include <vector>

#include "modeldb/store/record.h"

namespace modeldb {

/// Records whose rows a rollback has given back to what they were. Such a record goes on holding
/// what it had saved, and nobody can tell it otherwise; so what its row is again is remembered
/// here, for the question whether others have changed that meanwhile.
class RevertedRows {
 public:
  /// The row of the record is `values` again, a values text.
  void add(const Record& record, std::wstring values);

  /// What the row of the record was when it was read or written last, as a values text.
  [[nodiscard]] std::wstring saved_values(const Record& record) const;

  /// It has been written anew.
  void forget(const Record& record);

 private:
  struct Row {
    Record record;        // keeps the object, and so its address
    std::wstring held;    // what the record says that it has saved
    std::wstring values;  // what its row is
  };

  std::vector<Row> rows_;
};

}  // namespace modeldb
