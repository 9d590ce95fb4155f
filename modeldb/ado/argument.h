#pragma once

#include <string_view>

#include "com/variant.h"

namespace modeldb {

/// A client's argument, by value or by reference, as `type`. Raises `sentence` when it cannot be
/// converted.
com::Variant argument_as(VARTYPE type, const VARIANT& argument, std::wstring_view sentence);

}  // namespace modeldb
