#pragma once

#include <string_view>
#include <vector>

#include "modeldb/engine/literal.h"

namespace modeldb {

/// What a client's text asks for, by its first word.
enum class TextKind { kSelect, kInsert, kUpdate, kDelete, kBegin, kCommit, kRollback };

/// A client's text with parameters in the place of literals.
struct ReadText : BoundText {
  std::vector<std::wstring_view> literals;  ///< as they stand in the text, one for each value

  void clear() {
    BoundText::clear();
    literals.clear();
  }
};

/// Whether there is nothing in the text but blanks and comments.
bool is_blank(std::wstring_view text);
/// Whether the text begins as a query does.
bool is_query(std::wstring_view text);

/// Checks what must hold for every text that a client has written, whatever tables it names: it is
/// one of the kinds above, well-formed, one statement alone, without parameters; one that changes
/// something has no comment and no RETURNING. Anything else is refused with a sentence
/// (kPermissionDenied or kErrorsInCommand).
///
/// Writes the text into `out` with parameters in the place of literals, so that texts that differ
/// in their numbers share one prepared statement. Only literals in known places are taken (a row of
/// VALUES, an assignment, a comparison in WHERE of a statement without a second SELECT), because
/// elsewhere a parameter may mean something else: a column's position in ORDER BY, the name of a
/// result column.
TextKind read_client_text(std::wstring_view text, ReadText& out);

}  // namespace modeldb
