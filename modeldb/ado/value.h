#pragma once

#include <msado15_backcompat.h>

#include <string_view>

#include "modeldb/engine/statement.h"

namespace modeldb {

/// Stores the value of a column of the current row in `out`, which holds nothing yet, in the types
/// that every script language can compute with:
///
/// | stored    | automation                                                                      |
/// |-----------|---------------------------------------------------------------------------------|
/// | NULL      | VT_NULL                                                                         |
/// | integer   | VT_I4; VT_R8 when it does not fit but a double is exact; otherwise VT_DECIMAL   |
/// | real      | VT_R8                                                                           |
/// | text      | VT_BSTR                                                                         |
/// | blob      | array of VT_UI1                                                                 |
void read_value(const Statement& row, int column, VARIANT* out);

/// ADO's type of a column, by the type that the table declares; adVariant for an expression.
DataTypeEnum ado_type(std::wstring_view declared_type);

}  // namespace modeldb
