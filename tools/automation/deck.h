#pragma once

#include <optional>
#include <string>
#include <vector>

#include "com/automation.h"
#include "tools/automation/library.h"
#include "tools/automation/remarks.h"
#include "tools/deck/deck.h"

namespace automation {

/// An input deck, as scripts read, copy and write it.
class Deck : public com::AutomationObject<IDeck, kLibrary> {
 public:
  /// Fails, with a sentence, when the deck cannot be read; then the one that was read before, if
  /// any, is still there.
  STDMETHODIMP Read(BSTR bstrPath) override;
  /// One transaction. Fails, with a sentence, when the model holds anything; then nothing has
  /// changed.
  STDMETHODIMP CopyTo(IDispatch* pModelDatabase) override;
  /// Fails, with a sentence, when the model does not come from this deck, when a record cannot be
  /// written, or when the path is that of the deck; then the file at the path is as it was before.
  STDMETHODIMP Write(IDispatch* pModelDatabase, BSTR bstrPath, VARIANT vOtherDeck) override;
  STDMETHODIMP get_Remarks(IRemarks** pVal) override;
  STDMETHODIMP Sources(IDispatch* pModelDatabase, ISetSources** pVal) override;
  STDMETHODIMP get_Path(BSTR* pVal) override;
  STDMETHODIMP get_Checksum(BSTR* pVal) override;

 private:
  [[nodiscard]] const deck::Deck& deck() const;
  void require_not_a_part(const std::string& path) const;

  std::string path_;
  std::optional<deck::Deck> deck_;
  std::vector<RemarkText> remarks_;
};

}  // namespace automation
