#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "modeldb/engine/literal.h"

namespace modeldb {

// A record's texts of its own row: 'description', number, number, ... The description stands
// between its quotes as it is, so that its end cannot be told from the text; whoever knows the
// description says what it is. Everything else must be plain names, numbers and NULL. A text that
// is anything else is refused with a sentence (kInvalidArgument), or by NoNumber, so that nothing
// in it can ever act as SQL.

/// Thrown of a value that is no number.
struct NoNumber {
  std::size_t column;      ///< counted from the description's, which is 0
  std::wstring_view text;  ///< what stands in the value's place
};

/// Appends the values of a values text, such as  'Tip load', 12, 250, -1  .
void append_values(std::wstring_view values, std::wstring_view description,
                   std::vector<Literal>& out);

/// Appends an assignments text, such as  Description = 'Tip load', VertexID = 12  : a parameter
/// for every value.
void append_assignments(std::wstring_view assignments, std::wstring_view description,
                        BoundText& out);

}  // namespace modeldb
