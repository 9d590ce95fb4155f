#pragma once

#include <string>
#include <string_view>

namespace modeldb {

/// A client's statement, as read_client_text leaves it, in the words of PostgreSQL.
///
/// The result consists of the words that the tokeniser has read and of nothing else: one blank
/// stands between any two, so that the server cannot see other words in them (E'', U&'', nested
/// comments), and comments are left out. What remains may do no more than the same text on a file:
/// functions that only compute, tables that are not the server's or the model database's own, no
/// changes in a query. kPermissionDenied, with a sentence: it would do more. kErrorsInCommand: it
/// has a literal that the server does not know.
///
/// Some words mean something else to the server and are replaced: LIKE takes no account of the case
/// of Latin letters, quoted names neither; [name] and `name` are names.
std::wstring in_server_dialect(std::wstring_view sql);

}  // namespace modeldb
