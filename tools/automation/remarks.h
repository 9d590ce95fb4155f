#pragma once

#include <string>
#include <vector>

#include "com/list.h"
#include "tools/automation/library.h"

namespace automation {

/// What a remark says; texts in UTF-8.
struct RemarkText {
  std::string file;  ///< empty when it concerns no line
  long line = 0;     ///< from 1; 0 when it concerns none
  std::string reason;
};

class Remark : public com::AutomationObject<IRemark, kLibrary> {
 public:
  explicit Remark(RemarkText text) : text_(std::move(text)) {}

  STDMETHODIMP get_Text(BSTR* pVal) override;
  STDMETHODIMP get_File(BSTR* pVal) override;
  STDMETHODIMP get_Line(long* pVal) override;
  STDMETHODIMP get_Reason(BSTR* pVal) override;

 private:
  RemarkText text_;
};

using Remarks = com::List<IRemarks, IRemark, kLibrary>;

com::Ptr<IRemarks> make_remarks(const std::vector<RemarkText>& texts);

}  // namespace automation
