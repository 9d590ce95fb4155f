#pragma once

#include <oaidl.h>

#include <string>
#include <string_view>

#include "modeldb/engine/literal.h"
#include "modeldb/schema/kind.h"

namespace modeldb {

/// Why a cell cannot be stored: the rest of a sentence that begins with where the cell is.
struct CellFault {
  std::wstring words;
};

/// Without what a record takes off its description.
std::wstring_view trimmed(std::wstring_view text);

/// Whether nothing was written into a cell: it is empty, null, or a text of blanks.
bool is_blank(const VARIANT& cell);

/// The value of a cell for a column. A truth value is -1 or 0, and a text may be a
/// number as programs write it; nothing is rounded or cut. A text in the result refers to the cell
/// or to `text`. Throws CellFault.
Literal literal_of(const VARIANT& cell, const Column& column, std::wstring& text);

/// A name that a cell holds, without blanks around it. Throws CellFault.
std::wstring_view text_of_cell(const VARIANT& cell, std::wstring& text);

/// The number of a node that a cell holds; 0 for a new one. Throws CellFault.
long vertex_of(const VARIANT& cell);

/// The number of a record that a cell holds, from 1 on. Throws CellFault.
long key_of(const VARIANT& cell);

}  // namespace modeldb
