#include "tools/text/failure.h"

#include "com/error.h"
#include "tools/text/utf8.h"

namespace text {

void fail(HRESULT result, std::string_view sentence) {
  com::fail(result, L"Orv_Tools", to_wide(sentence));
}

}  // namespace text
