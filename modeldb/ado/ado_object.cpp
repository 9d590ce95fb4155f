#include "modeldb/ado/ado_object.h"

#include <string>

#include "modeldb/base/failure.h"

namespace modeldb {

HRESULT not_available(std::wstring_view member, std::wstring_view reason) {
  return com::boundary([&] {
    fail(kFeatureNotAvailable,
         std::wstring(member) + L" is not available in a model database: " + std::wstring(reason));
  });
}

}  // namespace modeldb
