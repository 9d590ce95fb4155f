#include "com/error.h"

#include <oleauto.h>

#include "com/bstr.h"

namespace com {
namespace {

bool supports_error_info(IUnknown* source, REFIID interface_id) {
  Ptr<ISupportErrorInfo> support;
  return SUCCEEDED(source->QueryInterface(__uuidof(ISupportErrorInfo), support.put_void())) &&
         support && support->InterfaceSupportsErrorInfo(interface_id) == S_OK;
}

}  // namespace

void raise_from(HRESULT result, IUnknown* source, REFIID interface_id) {
  Ptr<IErrorInfo> info;
  // The thread's error object may stem from an earlier failure of another object: it is taken only
  // when the source vouches for it.
  if (source && supports_error_info(source, interface_id)) GetErrorInfo(0, info.put());
  throw Error(result, std::move(info));
}

void fail(HRESULT result, std::wstring_view source, std::wstring_view sentence) {
  Ptr<ICreateErrorInfo> description;
  check(CreateErrorInfo(description.put()));
  check(description->SetSource(Bstr(source).get()));
  check(description->SetDescription(Bstr(sentence).get()));
  throw Error(result, description.query<IErrorInfo>());
}

}  // namespace com
