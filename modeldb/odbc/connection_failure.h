#pragma once

#include "modeldb/odbc/connection_text.h"
#include "modeldb/odbc/diagnosis.h"

namespace modeldb {

/// Raises kCannotOpenFile: why no connection could be made, as far as that is known.
[[noreturn]] void fail_to_connect(const Diagnosis& diagnosis, const ConnectionText& text,
                                  const EnvironmentHandle& environment);

}  // namespace modeldb
