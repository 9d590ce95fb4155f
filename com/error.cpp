#include "com/error.h"

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
  throw Error(result, interface_id, std::move(info));
}

}  // namespace com
