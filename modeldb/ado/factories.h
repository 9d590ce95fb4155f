#pragma once

#include <msado15_backcompat.h>

#include <memory>
#include <string_view>

#include "com/ptr.h"
#include "modeldb/engine/database.h"

namespace modeldb {

// ADO's objects over a model database. Each shares the Database; once that is closed, whatever
// needs it fails with kObjectClosed and a sentence, and releasing the object stays safe.

/// The connection of `database`, which answers _Connection and Connection15. It is open for as long
/// as the database is; Close is refused with a sentence, since the model database owns it.
com::Ptr<_Connection> make_connection(std::shared_ptr<Database> database);

/// A command on `database`, which answers _Command, Command25 and Command15.
com::Ptr<_Command> make_command(std::shared_ptr<Database> database);

/// The rows of the query `sql` of a client, open. Anything but a query of the model's tables is
/// refused with kPermissionDenied.
com::Ptr<_Recordset> make_recordset(std::shared_ptr<Database> database, std::wstring_view sql);

/// Creates ADO's Recordset class, for a class object (com::ClassEntry::Creator). The recordset
/// finds its database in the connection that Open is given, which must be one of make_connection.
HRESULT create_recordset(IUnknown* outer, REFIID iid, void** out);

}  // namespace modeldb
