#pragma once

#include <utility>

#include "com/automation.h"
#include "com/list.h"
#include "tools/automation/library.h"
#include "tools/checks/step_actions.h"

namespace automation {

class ActingRecord : public com::AutomationObject<IActingRecord, kLibrary> {
 public:
  explicit ActingRecord(checks::ActingRecord record) : record_(std::move(record)) {}

  STDMETHODIMP get_Text(BSTR* pVal) override;
  STDMETHODIMP get_Table(BSTR* pVal) override;
  STDMETHODIMP get_ID(long* pVal) override;
  STDMETHODIMP get_SetName(BSTR* pVal) override;

 private:
  checks::ActingRecord record_;
};

class StepAction : public com::AutomationObject<IStepAction, kLibrary> {
 public:
  explicit StepAction(checks::StepAction action) : action_(std::move(action)) {}

  STDMETHODIMP get_Text(BSTR* pVal) override;
  STDMETHODIMP get_Node(long* pVal) override;
  STDMETHODIMP get_Freedom(long* pVal) override;
  STDMETHODIMP get_What(BSTR* pVal) override;
  STDMETHODIMP get_Value(double* pVal) override;
  STDMETHODIMP get_CoordinateSystemID(long* pVal) override;
  STDMETHODIMP get_Amplitude(BSTR* pVal) override;
  STDMETHODIMP get_LoadCase(long* pVal) override;
  STDMETHODIMP get_Step(long* pVal) override;
  STDMETHODIMP get_Records(IActingRecords** pVal) override;

 private:
  checks::StepAction action_;
};

using ActingRecords = com::List<IActingRecords, IActingRecord, kLibrary>;
using StepActions = com::List<IStepActions, IStepAction, kLibrary>;

}  // namespace automation
