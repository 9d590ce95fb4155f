#pragma once

namespace modeldb {

/// What SqlString of a persistent object is asked for. Values and assignments are those that it has
/// now, or those that it had when it was last stored.
enum class Piece : long {
  kTable = 1,
  kKeyColumn = 2,
  kColumns = 3,
  kValues = 4,
  kStoredValues = 5,
  kAssignments = 6,
  kStoredAssignments = 7,
};

/// The moments at which FileOpHelper of a persistent object is called.
enum class FileOp : long { kBeforeSave = 1, kAfterSave = 2, kDelete = 3 };

}  // namespace modeldb
