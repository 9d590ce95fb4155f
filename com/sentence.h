#pragma once

#include <string>

#include "com/bstr.h"
#include "com/error.h"

namespace com {

/// The sentence that a failure carries; empty when it has none.
inline std::wstring sentence_of(const Error& error) {
  Bstr text;
  if (error.info()) error.info()->GetDescription(text.put());
  return std::wstring(text.view());
}

}  // namespace com
