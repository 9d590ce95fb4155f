#pragma once

#include <string_view>
#include <vector>

#include "modeldb/store/record_store.h"

namespace modeldb {

/// Adds a row for each row of `rows`, all or none, with one notification, and returns the keys of
/// the new rows in their order.
///
/// `table` is a table of the catalogue and `columns` a list of its columns. Beside them may stand,
/// for a kind that belongs to sets, its table of sets (LoadSets: a set by its name) and their key
/// (LoadSetID), each as often as wanted. A column that is not named, and a blank cell, have the
/// value of a new record. A vertex that the model does not have is made as a record's save makes
/// it.
///
/// Raises, with a sentence that names row and column, when a cell cannot be stored as it is. Rows
/// are counted from 1.
std::vector<long> append_rows(RecordStore& store, std::wstring_view table, const VARIANT& columns,
                              const VARIANT& rows);

}  // namespace modeldb
