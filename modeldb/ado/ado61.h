#pragma once

#include <windows.h>

namespace modeldb {

/// ADO 6.1, the library since Windows 7, has the interfaces of ADO 2.x with the same members under
/// identifiers of its own; only _ADO and _Collection kept theirs.
///
/// The identifier that the interface `iid` of ADO 2.x has there.
IID ado61_identifier(REFIID iid);

}  // namespace modeldb
