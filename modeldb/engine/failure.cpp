#include "modeldb/engine/failure.h"

#include <oleauto.h>

#include "com/bstr.h"
#include "com/error.h"
#include "com/ptr.h"

namespace modeldb {

void fail(HRESULT result, std::wstring_view sentence) {
  com::Ptr<ICreateErrorInfo> description;
  com::check(CreateErrorInfo(description.put()));
  com::check(description->SetSource(com::Bstr(L"Orv_ModelDb").get()));
  com::check(description->SetDescription(com::Bstr(sentence).get()));
  throw com::Error(result, GUID_NULL, description.query<IErrorInfo>());
}

std::wstring quoted(std::wstring_view text) {
  constexpr std::size_t kMaximum = 160;
  constexpr std::size_t kHalf = kMaximum / 2;
  std::wstring result = L"\"";
  if (text.size() <= kMaximum) {
    result += text;
  } else {
    result.append(text.substr(0, kHalf)).append(L" ... ");
    result += text.substr(text.size() - kHalf);
  }
  return result += L'"';
}

}  // namespace modeldb
