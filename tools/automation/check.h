#pragma once

#include <utility>

#include "com/automation.h"
#include "com/list.h"
#include "tools/automation/library.h"
#include "tools/checks/finding.h"
#include "tools/checks/resultant.h"

namespace automation {

class Finding : public com::AutomationObject<IFinding, kLibrary> {
 public:
  explicit Finding(checks::Finding finding) : finding_(std::move(finding)) {}

  STDMETHODIMP get_Text(BSTR* pVal) override;
  STDMETHODIMP get_Code(BSTR* pVal) override;
  STDMETHODIMP get_Severity(BSTR* pVal) override;
  STDMETHODIMP get_What(BSTR* pVal) override;
  STDMETHODIMP get_Where(BSTR* pVal) override;
  STDMETHODIMP get_Advice(BSTR* pVal) override;
  STDMETHODIMP get_Table(BSTR* pVal) override;
  STDMETHODIMP get_SetName(BSTR* pVal) override;
  STDMETHODIMP get_Step(long* pVal) override;
  STDMETHODIMP get_Count(long* pVal) override;
  STDMETHODIMP get_Record(long Index, long* pVal) override;

 private:
  checks::Finding finding_;
};

class Resultant : public com::AutomationObject<IResultant, kLibrary> {
 public:
  explicit Resultant(checks::Resultant sum) : sum_(std::move(sum)) {}

  STDMETHODIMP get_Name(BSTR* pVal) override;
  STDMETHODIMP get_Step(long* pVal) override;
  STDMETHODIMP get_Records(long* pVal) override;
  STDMETHODIMP get_LeftOut(long* pVal) override;
  STDMETHODIMP get_WithAmplitude(long* pVal) override;
  STDMETHODIMP get_Fx(double* pVal) override;
  STDMETHODIMP get_Fy(double* pVal) override;
  STDMETHODIMP get_Fz(double* pVal) override;
  STDMETHODIMP get_Mx(double* pVal) override;
  STDMETHODIMP get_My(double* pVal) override;
  STDMETHODIMP get_Mz(double* pVal) override;

 private:
  checks::Resultant sum_;
};

using Findings = com::List<IFindings, IFinding, kLibrary>;
using Resultants = com::List<IResultants, IResultant, kLibrary>;

/// Checks of an open model, as scripts call them. The model is only read.
class Check : public com::AutomationObject<ICheck, kLibrary> {
 public:
  STDMETHODIMP Run(IDispatch* pModelDatabase, IFindings** pVal) override;
  STDMETHODIMP Resultants(IDispatch* pModelDatabase, VARIANT vX, VARIANT vY, VARIANT vZ,
                          IResultants** pVal) override;
  /// Fails, with a sentence, when the model has no such step.
  STDMETHODIMP Acting(IDispatch* pModelDatabase, long Step, IStepActions** pVal) override;
};

}  // namespace automation
