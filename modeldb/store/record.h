#pragma once

#include <orv_host.h>

#include <string>
#include <string_view>

#include "com/bstr.h"
#include "com/ptr.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// What SqlString of a persistent object is asked for.
enum class Piece : long { kTable = 1, kKeyColumn = 2, kColumns = 3, kValues = 4, kAssignments = 6 };

/// The moments at which FileOpHelper of a persistent object is called.
enum class FileOp : long { kBeforeSave = 1, kAfterSave = 2, kDelete = 3 };

/// An object that was handed to the record store, and what kind it is of. Failures of its members
/// are raised with the sentence that came with them, or else with one that says what went wrong.
class Record {
 public:
  Record(const Table& table, com::Ptr<IPersistentObject> object);

  [[nodiscard]] const Table& table() const { return *table_; }
  [[nodiscard]] const Kind& kind() const { return table_->kind(); }

  /// The ID that it had when it was handed over.
  [[nodiscard]] long id() const { return id_; }
  [[nodiscard]] long current_id() const;
  void set_id(long id) const;
  [[nodiscard]] long dirty() const;
  void set_dirty(long dirty) const;
  [[nodiscard]] com::Bstr description() const;
  [[nodiscard]] long event_type() const;
  [[nodiscard]] com::Bstr text(Piece piece) const;
  void file_operation(IModelDatabase* database, FileOp operation, bool cascade_down,
                      bool cascade_up) const;

  /// "NodalForce 12", or "The new NodalForce": for sentences.
  [[nodiscard]] std::wstring name() const;

 private:
  void check(HRESULT result, std::wstring_view doing) const;

  const Table* table_;
  com::Ptr<IPersistentObject> object_;
  long id_ = 0;
};

/// Finds out of what kind an object is.
class RecordFinder {
 public:
  explicit RecordFinder(const Catalogue& catalogue) : catalogue_(catalogue) {}

  /// Raises, with a sentence, when the object is of no kind that the model has a table for.
  Record find(IDispatch* object);

 private:
  const Catalogue& catalogue_;
  // Records mostly come in runs of one kind.
  const Table* last_ = nullptr;
};

}  // namespace modeldb
