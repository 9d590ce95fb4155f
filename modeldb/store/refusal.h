#pragma once

#include "com/error.h"
#include "modeldb/engine/database.h"
#include "modeldb/schema/catalogue.h"
#include "modeldb/store/record.h"

namespace modeldb {

/// Where the model's rules refused to delete a record, raises a sentence that says what stands on
/// it; otherwise `error` as it is.
[[noreturn]] void fail_to_delete(const com::Error& error, Database& database,
                                 const Catalogue& catalogue, const Record& record);

/// Where the model's rules refused to link a record to a set, raises a sentence that names the set;
/// otherwise `error` as it is.
[[noreturn]] void fail_to_link(const com::Error& error, Database& database,
                               const Catalogue& catalogue, const Record& record);

}  // namespace modeldb
