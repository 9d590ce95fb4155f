#pragma once

#include <orv_modeldb.h>

#include <string_view>
#include <vector>

#include "com/automation.h"
#include "com/bstr.h"
#include "com/free_threaded.h"
#include "modeldb/base/library.h"

namespace modeldb {

/// A record that a batch could not save or delete, and why.
class Failure : public com::FreeThreaded<com::DispatchObject<IFailure, kLibrary>> {
 public:
  Failure(IDispatch* record, HRESULT number, std::wstring_view sentence)
      : record_(record), number_(number), sentence_(sentence) {}

  STDMETHODIMP get_Record(IDispatch** pVal) override;
  STDMETHODIMP get_Number(long* pVal) override;
  STDMETHODIMP get_Sentence(BSTR* pVal) override;

 private:
  com::Ptr<IDispatch> record_;
  HRESULT number_;
  com::Bstr sentence_;
};

/// The failures of one batch, in the order in which they happened. Each batch has a list of its
/// own, so that one which a script holds stays as it is.
class Failures : public com::FreeThreaded<com::DispatchObject<IFailures, kLibrary>> {
 public:
  void add(IDispatch* record, HRESULT number, std::wstring_view sentence);
  [[nodiscard]] const std::vector<com::Ptr<IDispatch>>& all() const { return failures_; }

  /// E_INVALIDARG: no such index.
  STDMETHODIMP Item(int Index, IFailure** pVal) override;
  STDMETHODIMP get_Count(long* pVal) override;
  /// An enumerator of its own for each caller.
  STDMETHODIMP get__NewEnum(IUnknown** pVal) override;

 private:
  std::vector<com::Ptr<IDispatch>> failures_;
};

}  // namespace modeldb
