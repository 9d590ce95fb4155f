#pragma once

#include "modeldb/engine/table_definition.h"
#include "modeldb/odbc/session.h"

namespace modeldb {

/// Gives the rows of a new table their keys: a row without one gets the next, and one that brings
/// its own moves the next beyond it, so that a key is never given twice, not to later rows either.
///
/// The server's own generated keys do not follow keys that rows bring. A trigger does both; it
/// holds a lock of the session around the two steps of moving, and a shared one around drawing,
/// since otherwise a writer could move back what another has drawn.
void give_keys(Session& session, const TableDefinition& table);

/// The sequence from which they are drawn; everybody may look at it.
std::wstring name_of_keys(const TableDefinition& table);
/// A function of the server's that draws so many, for rows to come, and tells them with commas
/// between them.
std::wstring name_of_drawing(const TableDefinition& table);

}  // namespace modeldb
