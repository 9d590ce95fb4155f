#include "tools/automation/check.h"

#include <string>
#include <vector>

#include "tools/automation/acting.h"
#include "tools/automation/answer.h"
#include "tools/checks/check.h"
#include "tools/checks/json.h"
#include "tools/checks/resultants.h"
#include "tools/model/subject.h"
#include "tools/text/failure.h"

namespace automation {
namespace {

double coordinate(const VARIANT& argument) {
  return com::is_omitted(argument) ? 0 : com::Variant(argument).as(VT_R8).get().dblVal;
}

}  // namespace

STDMETHODIMP Finding::get_Text(BSTR* pVal) {
  return answer(pVal, std::string(checks::name_of(finding_.severity)) + " " + finding_.code + ": " +
                          finding_.what + " (" + finding_.where + ")");
}
STDMETHODIMP Finding::get_Code(BSTR* pVal) { return answer(pVal, finding_.code); }
STDMETHODIMP Finding::get_Severity(BSTR* pVal) {
  return answer(pVal, checks::name_of(finding_.severity));
}
STDMETHODIMP Finding::get_What(BSTR* pVal) { return answer(pVal, finding_.what); }
STDMETHODIMP Finding::get_Where(BSTR* pVal) { return answer(pVal, finding_.where); }
STDMETHODIMP Finding::get_Advice(BSTR* pVal) { return answer(pVal, finding_.advice); }
STDMETHODIMP Finding::get_Table(BSTR* pVal) { return answer(pVal, finding_.table); }
STDMETHODIMP Finding::get_SetName(BSTR* pVal) { return answer(pVal, finding_.set); }
STDMETHODIMP Finding::get_Step(long* pVal) { return number<long>(pVal, finding_.step); }
STDMETHODIMP Finding::get_Count(long* pVal) {
  return number(pVal, static_cast<long>(finding_.records.size()));
}

STDMETHODIMP Finding::get_Record(long Index, long* pVal) {
  return com::boundary([&] {
    if (Index < 0 || static_cast<std::size_t>(Index) >= finding_.records.size()) {
      text::fail(text::kInvalidArgument, "The finding names " +
                                             std::to_string(finding_.records.size()) +
                                             " records, with indices from 0.");
    }
    *pVal = finding_.records[static_cast<std::size_t>(Index)];
  });
}

STDMETHODIMP Resultant::get_Name(BSTR* pVal) { return answer(pVal, sum_.of); }
STDMETHODIMP Resultant::get_Step(long* pVal) { return number<long>(pVal, sum_.step); }
STDMETHODIMP Resultant::get_Records(long* pVal) {
  return number(pVal, static_cast<long>(sum_.records));
}
STDMETHODIMP Resultant::get_LeftOut(long* pVal) {
  return number(pVal, static_cast<long>(sum_.left_out));
}
STDMETHODIMP Resultant::get_WithAmplitude(long* pVal) {
  return number(pVal, static_cast<long>(sum_.with_amplitude));
}
STDMETHODIMP Resultant::get_Fx(double* pVal) { return number(pVal, sum_.rounded_force()[0]); }
STDMETHODIMP Resultant::get_Fy(double* pVal) { return number(pVal, sum_.rounded_force()[1]); }
STDMETHODIMP Resultant::get_Fz(double* pVal) { return number(pVal, sum_.rounded_force()[2]); }
STDMETHODIMP Resultant::get_Mx(double* pVal) { return number(pVal, sum_.rounded_moment()[0]); }
STDMETHODIMP Resultant::get_My(double* pVal) { return number(pVal, sum_.rounded_moment()[1]); }
STDMETHODIMP Resultant::get_Mz(double* pVal) { return number(pVal, sum_.rounded_moment()[2]); }

STDMETHODIMP Check::Run(IDispatch* pModelDatabase, IFindings** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    model::Database database(pModelDatabase);
    const model::CheckedModel checked(database);
    std::vector<com::Ptr<IDispatch>> items;
    for (checks::Finding& finding : checks::check(checked.subject())) {
      items.push_back(com::make<Finding>(std::move(finding)));
    }
    *pVal = com::make<Findings>(std::move(items)).detach();
  });
}

STDMETHODIMP Check::Resultants(IDispatch* pModelDatabase, VARIANT vX, VARIANT vY, VARIANT vZ,
                               IResultants** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    model::Database database(pModelDatabase);
    const model::CheckedModel checked(database);
    std::vector<com::Ptr<IDispatch>> items;
    for (checks::Resultant& sum : checks::resultants_of(
             checked.subject(), {coordinate(vX), coordinate(vY), coordinate(vZ)})) {
      items.push_back(com::make<Resultant>(std::move(sum)));
    }
    *pVal = com::make<automation::Resultants>(std::move(items)).detach();
  });
}

STDMETHODIMP Check::Acting(IDispatch* pModelDatabase, long Step, IStepActions** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    model::Database database(pModelDatabase);
    const model::CheckedModel checked(database);
    model::require_step(checked.subject(), static_cast<int>(Step));
    std::vector<com::Ptr<IDispatch>> items;
    checks::each_action(
        checked.subject(), static_cast<int>(Step),
        [&](const checks::StepAction& action) { items.push_back(com::make<StepAction>(action)); });
    *pVal = com::make<StepActions>(std::move(items)).detach();
  });
}

}  // namespace automation
