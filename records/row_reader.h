#pragma once

#include <msado15_backcompat.h>

#include <concepts>
#include <optional>
#include <string_view>

#include "com/boundary.h"
#include "com/ptr.h"
#include "com/variant.h"
#include "records/field.h"

namespace orv {

/// Reads columns of the row at which the caller's recordset stands.
class RowReader {
 public:
  /// `qualifier` names the table, or its alias in the query, for columns that the row of a join
  /// offers under their qualified name only. It must outlive the reader.
  RowReader(IDispatch* recordset, std::wstring_view qualifier)
      : recordset_(com::Ptr<IDispatch>(recordset).query<Recordset15>()), qualifier_(qualifier) {}

  /// Reads `column` converted to `type`, by the bare name first and else by the qualified one. When
  /// both fail nothing is returned, and the second failure becomes the outcome's; the first one if
  /// only the bare name led to a field, whose value was the trouble.
  [[nodiscard]] std::optional<com::Variant> read(std::wstring_view column, VARTYPE type,
                                                 com::Outcome& outcome) const;

  /// Reads a column into a field, both as current and as saved value; a failed read leaves it.
  template <class T>
  void read(std::wstring_view column, Field<T>& field, com::Outcome& outcome) const {
    if constexpr (std::floating_point<T>) {
      if (const auto value = read(column, VT_R8, outcome)) field = Field<T>(value->get().dblVal);
    } else {
      // Flags held in 16 bits keep the low ones of the number.
      const auto value = read(column, VT_I4, outcome);
      if (value) field = Field<T>(static_cast<T>(value->get().lVal));
    }
  }

 private:
  /// Also tells whether there is such a field.
  com::Variant value_of(const VARIANT& name, VARTYPE type, bool& found) const;

  com::Ptr<Recordset15> recordset_;
  std::wstring_view qualifier_;
};

}  // namespace orv
