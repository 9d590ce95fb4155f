#pragma once

#include <msado15_backcompat.h>

#include <optional>
#include <span>
#include <string_view>

#include "com/ptr.h"
#include "com/variant.h"

namespace modeldb {

/// Reads columns of the row at which a client's recordset stands, by their bare names.
class ColumnReader {
 public:
  /// Raises when the object is no recordset.
  explicit ColumnReader(IDispatch* recordset);

  /// Raises what the recordset answers when it has no such column.
  [[nodiscard]] com::Variant read(std::wstring_view column) const;
  /// Raises a failing conversion, too.
  [[nodiscard]] com::Variant read(std::wstring_view column, VARTYPE type) const;
  /// Nothing when the recordset has no such column, or nothing of the type in it, such as NULL.
  [[nodiscard]] std::optional<com::Variant> try_read(std::wstring_view column, VARTYPE type) const;

  /// Whether the recordset has any of the columns. To ask for one that it does not have costs an
  /// error with its sentence, as much as loading some records.
  [[nodiscard]] bool has_one_of(std::span<const std::wstring_view> columns) const;

 private:
  com::Ptr<Fields> fields_;
};

}  // namespace modeldb
