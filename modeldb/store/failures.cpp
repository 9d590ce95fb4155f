#include "modeldb/store/failures.h"

#include "com/enumerator.h"
#include "com/free_threaded.h"
#include "modeldb/base/failure.h"

namespace modeldb {

STDMETHODIMP Failure::get_Record(IDispatch** pVal) {
  *pVal = record_.copy();
  return S_OK;
}

STDMETHODIMP Failure::get_Number(long* pVal) {
  *pVal = number_;
  return S_OK;
}

STDMETHODIMP Failure::get_Sentence(BSTR* pVal) {
  return com::boundary([&] { *pVal = com::Bstr(sentence_.view()).detach(); });
}

void Failures::add(IDispatch* record, HRESULT number, std::wstring_view sentence) {
  failures_.emplace_back(com::make<Failure>(record, number, sentence).get());
}

STDMETHODIMP Failures::Item(int Index, IFailure** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    if (Index < 0 || static_cast<std::size_t>(Index) >= failures_.size()) {
      fail(E_INVALIDARG, L"There is no failure " + std::to_wstring(Index) + L": " +
                             std::to_wstring(failures_.size()) + L" are listed, counted from 0.");
    }
    *pVal = failures_[static_cast<std::size_t>(Index)].query<IFailure>().detach();
  });
}

STDMETHODIMP Failures::get_Count(long* pVal) {
  *pVal = static_cast<long>(failures_.size());
  return S_OK;
}

STDMETHODIMP Failures::get__NewEnum(IUnknown** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    *pVal = com::make<com::FreeThreaded<com::Enumerator>>(failures_).query<IUnknown>().detach();
  });
}

}  // namespace modeldb
