#include "tools/automation/remarks.h"

#include "tools/automation/answer.h"

namespace automation {

STDMETHODIMP Remark::get_Text(BSTR* pVal) {
  std::string text;
  if (!text_.file.empty()) text += text_.file + ", ";
  if (text_.line > 0) text += "line " + std::to_string(text_.line) + ": ";
  return answer(pVal, text + text_.reason);
}

STDMETHODIMP Remark::get_File(BSTR* pVal) { return answer(pVal, text_.file); }

STDMETHODIMP Remark::get_Line(long* pVal) {
  *pVal = text_.line;
  return S_OK;
}

STDMETHODIMP Remark::get_Reason(BSTR* pVal) { return answer(pVal, text_.reason); }

com::Ptr<IRemarks> make_remarks(const std::vector<RemarkText>& texts) {
  std::vector<com::Ptr<IDispatch>> items;
  items.reserve(texts.size());
  for (const RemarkText& text : texts) items.push_back(com::make<Remark>(text));
  return com::make<Remarks>(std::move(items));
}

}  // namespace automation
