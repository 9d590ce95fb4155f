#pragma once

#include <string>
#include <vector>

#include "com/automation.h"
#include "tools/automation/library.h"
#include "tools/automation/remarks.h"

namespace automation {

/// An input deck, as scripts read, copy and write it.
class Deck : public com::AutomationObject<::Deck, IDeck, kLibrary> {
 public:
  /// Fails, with a sentence, when the file cannot be read; then the deck that was read before, if
  /// any, is still there.
  STDMETHODIMP Read(BSTR bstrPath) override;
  /// One transaction. Fails, with a sentence, when the model holds anything; then nothing has
  /// changed.
  STDMETHODIMP CopyTo(IDispatch* pModelDatabase) override;
  /// Fails, with a sentence, when the model does not come from this deck, or when a record cannot
  /// be written; then the file at the path is as it was before.
  STDMETHODIMP Write(IDispatch* pModelDatabase, BSTR bstrPath) override;
  STDMETHODIMP get_Remarks(IRemarks** pVal) override;
  STDMETHODIMP Sources(IDispatch* pModelDatabase, ISetSources** pVal) override;
  STDMETHODIMP get_Path(BSTR* pVal) override;
  STDMETHODIMP get_Checksum(BSTR* pVal) override;

 private:
  std::string path_;
  std::string checksum_;
  std::vector<RemarkText> remarks_;
};

}  // namespace automation
