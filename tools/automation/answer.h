#pragma once

#include <string_view>

#include "com/boundary.h"
#include "com/bstr.h"
#include "tools/text/utf8.h"

namespace automation {

/// Answers a property with the text, which is UTF-8.
inline HRESULT answer(BSTR* out, std::string_view text) {
  return com::boundary([&] { *out = com::Bstr(text::to_wide(text)).detach(); });
}

/// Answers a property with the number.
template <class Number>
HRESULT number(Number* out, Number value) {
  *out = value;
  return S_OK;
}

}  // namespace automation
