#pragma once

// The numbers by which a host and the persistent objects (records, vertices, sets) talk.

namespace host {

/// What SqlString of a persistent object is asked for. Values and assignments are those that it has
/// now, or those that it had when it was last loaded or saved.
enum class SqlPiece : long {
  kTable = 1,
  kKeyColumn = 2,
  kColumns = 3,
  kValues = 4,
  kSavedValues = 5,
  kAssignments = 6,
  kSavedAssignments = 7,
};

/// The moments at which the host calls FileOpHelper of a persistent object.
enum class FileOp : long { kBeforeSave = 1, kAfterSave = 2, kDelete = 3 };

}  // namespace host
