#pragma once

#include <orv_host.h>

#include <string>
#include <string_view>

#include "com/ptr.h"
#include "modeldb/objects/model.h"

namespace modeldb {

/// The kind of the records in the table `name`. Raises, with a sentence that lists the tables, when
/// there is no such table or its rows have no collection.
const Kind& loadable_kind(const Catalogue& catalogue, std::wstring_view name);

/// The text of an optional condition; empty when it is left out. Raises when it is no text.
std::wstring condition_of(const VARIANT& argument);

/// A new collection with the kind's records that meet the condition, in the order of their keys.
/// The condition is one expression of SQL over the table's columns; anything else is refused with a
/// sentence. A row that cannot be loaded fails the call with a sentence that names the row.
com::Ptr<IDispatch> load_collection(const Model& model, IModelDatabase* database, const Kind& kind,
                                    const std::wstring& condition);

}  // namespace modeldb
