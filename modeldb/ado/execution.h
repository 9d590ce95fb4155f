#pragma once

#include <msado15_backcompat.h>

#include <memory>
#include <string_view>

#include "modeldb/engine/database.h"

namespace modeldb {

/// Runs a text that a client gives to ADO. `options` tell what the text is: adCmdText, adCmdTable
/// (the name of a table), or neither, in which case a single name is a table's. Other kinds of text
/// and asynchronous work are refused with kFeatureNotAvailable.
TextResult run_text(Database& database, std::wstring_view text, LONG options, Seconds time_limit);

/// The same for Execute of a connection or command: `affected`, when not null, receives the number
/// of rows changed. The recordset holds the rows of a query, is closed for any other text, and null
/// with adExecuteNoRecords; the caller owns it.
void execute(Database& database, std::wstring_view text, VARIANT* affected, LONG options,
             Seconds time_limit, _Recordset** out);

/// What a client puts as CommandTimeout. kInvalidArgument: it is negative.
Seconds time_limit(LONG seconds);

}  // namespace modeldb
