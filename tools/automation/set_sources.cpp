#include "tools/automation/set_sources.h"

#include "tools/automation/answer.h"

namespace automation {
namespace {

HRESULT number(long* out, long value) {
  *out = value;
  return S_OK;
}

}  // namespace

STDMETHODIMP SetSource::get_Deck(BSTR* pVal) { return answer(pVal, row_.deck); }
STDMETHODIMP SetSource::get_Step(long* pVal) { return number(pVal, row_.step); }
STDMETHODIMP SetSource::get_Keyword(BSTR* pVal) { return answer(pVal, row_.keyword); }
STDMETHODIMP SetSource::get_Parameters(BSTR* pVal) { return answer(pVal, row_.parameters); }
STDMETHODIMP SetSource::get_Line(long* pVal) { return number(pVal, row_.line); }
STDMETHODIMP SetSource::get_LoadSetID(long* pVal) { return number(pVal, row_.load_set); }
STDMETHODIMP SetSource::get_ConstraintSetID(long* pVal) {
  return number(pVal, row_.constraint_set);
}

com::Ptr<ISetSources> set_sources_of(model::Database& database) {
  std::vector<com::Ptr<IDispatch>> items;
  model::Rows rows = database.query(
      "SELECT Decks.Description, Step, Keyword, Parameters, Line, LoadSetID, ConstraintSetID "
      "FROM SetSources JOIN Decks ON Decks.DeckID = SetSources.DeckID ORDER BY SetSourceID");
  while (rows.next()) {
    items.push_back(com::make<SetSource>(SetSourceRow{.deck = rows.text(0),
                                                      .step = rows.integer(1),
                                                      .keyword = rows.text(2),
                                                      .parameters = rows.text(3),
                                                      .line = rows.integer(4),
                                                      .load_set = rows.integer(5),
                                                      .constraint_set = rows.integer(6)}));
  }
  return com::make<SetSources>(std::move(items));
}

}  // namespace automation
