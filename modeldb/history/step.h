#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "modeldb/engine/row_recorder.h"

namespace modeldb {

/// A change of the model that can be taken back: an outermost transaction.
struct Step {
  long number = 0;  ///< never given twice
  std::wstring name;
  std::wstring made_at;  ///< UTC, as 2026-11-21T19:20:00Z
  bool is_undone = false;
  /// Whether another program, which keeps no history, has written since.
  bool is_overtaken = false;
  std::vector<RecordedTable> tables;
};

/// What the rows of a table are called in the names of steps.
struct Noun {
  std::wstring table;
  std::wstring one;
  std::wstring many;
  /// A step is named by those of its tables that have the lowest rank.
  int rank = 0;
};

/// "3 forces saved, 1 moment deleted"
std::wstring step_name(const std::vector<RecordedTable>& tables, const std::vector<Noun>& nouns);

}  // namespace modeldb
