#pragma once

#include <string>
#include <vector>

#include "com/automation.h"
#include "tools/automation/library.h"
#include "tools/views/views.h"

namespace automation {

/// A picture of an open model. A property refuses, with a sentence, what cannot be meant, and keeps
/// what it had.
class Picture : public com::AutomationObject<IModelPicture, kLibrary> {
 public:
  /// Fails, with a sentence, when the deck cannot be read, when the model does not have the kinds,
  /// sets or step, or when the file cannot be written; then what was at the path is still there.
  STDMETHODIMP Draw(IDispatch* pModelDatabase, BSTR bstrPath) override;
  STDMETHODIMP get_Deck(BSTR* pVal) override;
  STDMETHODIMP put_Deck(BSTR newVal) override;
  STDMETHODIMP get_View(BSTR* pVal) override;
  STDMETHODIMP put_View(BSTR newVal) override;
  STDMETHODIMP get_Scale(double* pVal) override;
  STDMETHODIMP put_Scale(double newVal) override;
  STDMETHODIMP get_Labels(BSTR* pVal) override;
  STDMETHODIMP put_Labels(BSTR newVal) override;
  STDMETHODIMP get_Sets(BSTR* pVal) override;
  STDMETHODIMP put_Sets(BSTR newVal) override;
  STDMETHODIMP get_Kinds(BSTR* pVal) override;
  STDMETHODIMP put_Kinds(BSTR newVal) override;
  STDMETHODIMP get_Step(long* pVal) override;
  STDMETHODIMP put_Step(long newVal) override;
  STDMETHODIMP get_Title(BSTR* pVal) override;
  STDMETHODIMP put_Title(BSTR newVal) override;
  STDMETHODIMP get_Remarks(IRemarks** pVal) override;

  [[nodiscard]] const views::Options& options() const { return options_; }

 private:
  template <class Change>
  HRESULT change(Change change);

  views::Options options_;
  std::vector<std::string> notes_;
};

}  // namespace automation
