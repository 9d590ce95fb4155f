#include "tools/automation/acting.h"

#include <vector>

#include "tools/automation/answer.h"

namespace automation {

STDMETHODIMP ActingRecord::get_Text(BSTR* pVal) { return answer(pVal, record_.name); }
STDMETHODIMP ActingRecord::get_Table(BSTR* pVal) { return answer(pVal, record_.table); }
STDMETHODIMP ActingRecord::get_ID(long* pVal) { return number<long>(pVal, record_.id); }
STDMETHODIMP ActingRecord::get_SetName(BSTR* pVal) { return answer(pVal, record_.set); }

STDMETHODIMP StepAction::get_Text(BSTR* pVal) {
  return com::boundary(
      [&] { *pVal = com::Bstr(text::to_wide(checks::sentence_of(action_))).detach(); });
}
STDMETHODIMP StepAction::get_Node(long* pVal) { return number<long>(pVal, action_.node); }
STDMETHODIMP StepAction::get_Freedom(long* pVal) { return number<long>(pVal, action_.freedom); }
STDMETHODIMP StepAction::get_What(BSTR* pVal) { return answer(pVal, action_.what); }
STDMETHODIMP StepAction::get_Value(double* pVal) { return number(pVal, action_.value); }
STDMETHODIMP StepAction::get_CoordinateSystemID(long* pVal) {
  return number<long>(pVal, action_.system);
}
STDMETHODIMP StepAction::get_Amplitude(BSTR* pVal) { return answer(pVal, action_.amplitude); }
STDMETHODIMP StepAction::get_LoadCase(long* pVal) { return number<long>(pVal, action_.load_case); }
STDMETHODIMP StepAction::get_Step(long* pVal) { return number<long>(pVal, action_.step); }

STDMETHODIMP StepAction::get_Records(IActingRecords** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    std::vector<com::Ptr<IDispatch>> items;
    for (const checks::ActingRecord& record : action_.records) {
      items.push_back(com::make<ActingRecord>(record));
    }
    *pVal = com::make<ActingRecords>(std::move(items)).detach();
  });
}

}  // namespace automation
