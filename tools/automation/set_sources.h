#pragma once

#include <string>

#include "com/list.h"
#include "tools/automation/library.h"
#include "tools/model/database.h"

namespace automation {

/// A row of the table SetSources; texts in UTF-8.
struct SetSourceRow {
  std::string deck;
  long step;
  std::string keyword;
  std::string parameters;
  long line;
  long load_set;
  long constraint_set;
};

class SetSource : public com::AutomationObject<ISetSource, kLibrary> {
 public:
  explicit SetSource(SetSourceRow row) : row_(std::move(row)) {}

  STDMETHODIMP get_Deck(BSTR* pVal) override;
  STDMETHODIMP get_Step(long* pVal) override;
  STDMETHODIMP get_Keyword(BSTR* pVal) override;
  STDMETHODIMP get_Parameters(BSTR* pVal) override;
  STDMETHODIMP get_Line(long* pVal) override;
  STDMETHODIMP get_LoadSetID(long* pVal) override;
  STDMETHODIMP get_ConstraintSetID(long* pVal) override;

 private:
  SetSourceRow row_;
};

using SetSources = com::List<ISetSources, ISetSource, kLibrary>;

/// Where the model says that its sets come from, in the order in which they were written.
com::Ptr<ISetSources> set_sources_of(model::Database& database);

}  // namespace automation
