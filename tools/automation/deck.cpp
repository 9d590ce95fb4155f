#include "tools/automation/deck.h"

#include "tools/automation/answer.h"
#include "tools/automation/set_sources.h"
#include "tools/text/failure.h"
#include "tools/text/file.h"

namespace automation {

STDMETHODIMP Deck::Read(BSTR bstrPath) {
  return com::boundary([&] {
    const std::string path = text::full_path(text::to_utf8(com::Bstr::view(bstrPath)));
    (void)text::read_file(path);
    path_ = path;
  });
}

STDMETHODIMP Deck::CopyTo(IDispatch*) {
  return com::boundary([&] { text::fail(E_NOTIMPL, "Decks cannot be copied yet."); });
}

STDMETHODIMP Deck::Write(IDispatch*, BSTR) {
  return com::boundary([&] { text::fail(E_NOTIMPL, "Decks cannot be written yet."); });
}

STDMETHODIMP Deck::get_Remarks(IRemarks** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    *pVal = make_remarks(remarks_).detach();
  });
}

STDMETHODIMP Deck::Sources(IDispatch* pModelDatabase, ISetSources** pVal) {
  return com::boundary([&] {
    *pVal = nullptr;
    model::Database database(pModelDatabase);
    *pVal = set_sources_of(database).detach();
  });
}

STDMETHODIMP Deck::get_Path(BSTR* pVal) { return answer(pVal, path_); }

STDMETHODIMP Deck::get_Checksum(BSTR* pVal) { return answer(pVal, checksum_); }

}  // namespace automation
