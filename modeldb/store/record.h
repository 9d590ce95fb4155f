#pragma once

#include <orv_host.h>

#include <array>
#include <string>
#include <string_view>

#include "com/bstr.h"
#include "com/ptr.h"
#include "host/protocol.h"
#include "modeldb/schema/catalogue.h"

namespace modeldb {

/// An object that was handed to the record store, and what kind it is of. Failures of its members
/// are raised with the sentence that came with them, or else with one that says what went wrong.
class Record {
 public:
  Record(const Table& table, com::Ptr<IPersistentObject> object);

  [[nodiscard]] const Table& table() const { return *table_; }
  [[nodiscard]] const Kind& kind() const { return table_->kind(); }

  /// The ID that it had when it was handed over.
  [[nodiscard]] long id() const { return id_; }
  /// The ID that it has now, and another one for it.
  [[nodiscard]] long current_id() const;
  void set_id(long id) const;
  /// Its IsDirty flag: 0 when what it holds is saved.
  [[nodiscard]] long dirty() const;
  void set_dirty(long dirty) const;
  /// Reading it makes the record trim it, also in the texts that it gives from then on.
  [[nodiscard]] com::Bstr description() const;
  /// The code of its kind in notifications.
  [[nodiscard]] long event_type() const;
  /// A text of its row (SqlString).
  [[nodiscard]] com::Bstr text(host::SqlPiece piece) const;
  /// Has it do its own part of a save or deletion (FileOpHelper), with its vertex and its sets
  /// saved too as the flags say.
  void file_operation(IModelDatabase* database, host::FileOp operation, bool cascade_down,
                      bool cascade_up) const;

  /// The sets that it belongs to; empty when it does not tell them.
  [[nodiscard]] com::Ptr<IDispatch> sets() const;

  /// Whether both are the same object.
  [[nodiscard]] bool is_same(const Record& other) const {
    return object_.get() == other.object_.get();
  }

  /// "NodalForce 12", or "The new NodalForce": for sentences.
  [[nodiscard]] std::wstring name() const;

 private:
  /// `doing` is for the sentence; as it comes, for its length is asked for at a failure alone.
  void check(HRESULT result, const wchar_t* doing) const;

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
  // Records mostly come in runs of one kind, each with its vertex.
  std::array<const Table*, 2> last_{};
};

}  // namespace modeldb
