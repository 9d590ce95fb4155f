#pragma once

#include <string>

#include "com/bstr.h"
#include "com/error.h"

namespace modeldb {

/// The sentence that a failure carries; empty when it has none.
inline std::wstring sentence_of(const com::Error& error) {
  com::Bstr text;
  if (error.info()) error.info()->GetDescription(text.put());
  return std::wstring(text.view());
}

}  // namespace modeldb
