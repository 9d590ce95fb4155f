#pragma once

#include <orv_modeldb.h>

#include <optional>
#include <vector>

#include "com/automation.h"
#include "com/bstr.h"
#include "com/free_threaded.h"
#include "modeldb/base/library.h"
#include "modeldb/history/step.h"
#include "modeldb/store/record_store.h"

namespace modeldb {

/// A step of the history, as it was when the history was asked for.
class HistoryStep : public com::FreeThreaded<com::DispatchObject<IHistoryStep, kLibrary>> {
 public:
  explicit HistoryStep(Step step) : step_(std::move(step)) {}

  STDMETHODIMP get_Number(long* pVal) override;
  STDMETHODIMP get_Name(BSTR* pVal) override;
  STDMETHODIMP get_MadeAt(DATE* pVal) override;
  STDMETHODIMP get_IsUndone(VARIANT_BOOL* pVal) override;
  STDMETHODIMP get_Changes(BSTR* pVal) override;
  STDMETHODIMP get_Rows(VARIANT vTable, long* pVal) override;

 private:
  const Step step_;
};

/// The steps of a model, the oldest first, as they were when it was asked for; the bounds are the
/// model's own.
class HistorySteps : public com::FreeThreaded<com::DispatchObject<IHistory, kLibrary>> {
 public:
  explicit HistorySteps(com::Ptr<RecordStore> store);

  /// E_INVALIDARG: no such index.
  STDMETHODIMP Item(int Index, IHistoryStep** pVal) override;
  STDMETHODIMP get_Count(long* pVal) override;
  STDMETHODIMP get__NewEnum(IUnknown** pVal) override;

  STDMETHODIMP get_NextNumber(long* pVal) override;
  STDMETHODIMP get_Note(BSTR* pVal) override;
  STDMETHODIMP get_MaximumSteps(long* pVal) override;
  STDMETHODIMP put_MaximumSteps(long newVal) override;
  STDMETHODIMP get_MaximumBytes(long* pVal) override;
  STDMETHODIMP put_MaximumBytes(long newVal) override;
  STDMETHODIMP Clear() override;

 private:
  template <class Work>
  HRESULT with_history(Work&& work);

  const com::Ptr<RecordStore> store_;
  std::vector<com::Ptr<IDispatch>> steps_;
};

/// The number of a step that a script passed: a number, or a step itself; nothing when it left the
/// argument out. Raises, with a sentence, when it is anything else.
std::optional<long> step_number(const VARIANT& argument);

}  // namespace modeldb
