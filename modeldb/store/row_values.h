#pragma once

#include "modeldb/engine/literal.h"
#include "modeldb/store/own_row.h"
#include "modeldb/store/record.h"

namespace modeldb {

/// The values of a record's row, taken out of the record's own texts so that they can be bound.
///
/// The texts are not trusted: table and columns must be those of the record's kind, the description
/// the record's property, and every other value a number. Whatever else is in them is refused with
/// a sentence that names the record.
class RowValues {
 public:
  /// Reads the row as an INSERT writes it.
  void read_for_insert(const Record& record);
  /// Reads the row as an UPDATE writes it.
  void read_for_update(const Record& record);

  /// Reads the row of an object of the model database's own.
  void read_own(const Record& record, const OwnRow& row);

  /// Reads the row as the record has it saved, out of a values text of its own. Beside get().
  void read_saved(const Record& record, std::wstring_view values);
  [[nodiscard]] const std::vector<Literal>& saved() const { return saved_; }

  /// One value for each column of the kind, in their order. Valid until the next read.
  [[nodiscard]] const std::vector<Literal>& get() const { return bound_.values; }

 private:
  template <class Append>
  void read(const Record& record, host::SqlPiece piece, Append append);

  // Kept from record to record, for their capacity and since the values refer to them.
  com::Bstr description_;
  com::Bstr text_;
  BoundText bound_;
  std::wstring saved_text_;
  std::vector<Literal> saved_;
};

/// Raises, with a sentence, unless the record's `piece` is `expected`.
void require_text(const Record& record, host::SqlPiece piece, std::wstring_view expected);

}  // namespace modeldb
