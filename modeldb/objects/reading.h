#pragma once

#include <orv_host.h>

#include <string>
#include <string_view>

#include "com/ptr.h"
#include "modeldb/model/model.h"

namespace modeldb {

/// The kind of the records in the table `name`. Raises, with a sentence that lists the tables, when
/// there is no such table.
const Kind& kind_of_table(const Catalogue& catalogue, std::wstring_view name);

/// Which records are wanted, in SQL over the columns of their table.
struct Selection {
  std::wstring condition;  // one expression; empty for all records
  std::wstring order;      // what stands behind ORDER BY; empty for that of the keys
};

/// The selection by optional arguments, empty where one is left out. Raises when one is no text.
Selection selection_of(const VARIANT& condition, const VARIANT& order);

/// A new collection with the kind's records that are selected; those of equal order come in that of
/// their keys. A condition or order that is anything else is refused with a sentence. A row that
/// cannot be loaded fails the call with a sentence that names the row.
com::Ptr<IDispatch> read_collection(const Model& model, IModelDatabase* database, const Kind& kind,
                                    const Selection& selection);

}  // namespace modeldb
