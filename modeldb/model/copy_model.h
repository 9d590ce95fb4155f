#pragma once

#include <cstdint>
#include <string_view>

#include "modeldb/model/model.h"

namespace modeldb {

/// Copies all rows of a model's tables, under their keys, into the model at another location, which
/// may lie behind another engine, and is made if need be. Keys that were ever given are not given
/// again there. Returns how many rows it has.
///
/// It is one transaction: before it is committed, every value is read back and compared with its
/// original; zeros are the same whatever their sign, which a file does not keep. kIllegalOperation:
/// there are rows already, or others change rows meanwhile, or a table has columns of another
/// program, which would be lost. The history and tables of other programs are not copied.
std::int64_t copy_model(Model& source, std::wstring_view location);

}  // namespace modeldb
