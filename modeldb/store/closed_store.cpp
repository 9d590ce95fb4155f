#include "modeldb/store/closed_store.h"

#include "com/boundary.h"
#include "modeldb/base/failure.h"

namespace modeldb {

void fail_without_model() {
  fail(kObjectClosed, L"No model is open. Call Open with the path of a model database file first.");
}

HRESULT ClosedStore::refuse() {
  return com::boundary([] { fail_without_model(); });
}

}  // namespace modeldb
