#include "tools/automation/report.h"

#include "tools/text/file.h"
#include "tools/text/utf8.h"

namespace automation {

STDMETHODIMP Report::Write(IDispatch* pModelDatabase, BSTR bstrPath) {
  return com::boundary([&] {
    const std::string path = text::full_path(text::to_utf8(com::Bstr::view(bstrPath)));
    model::Database database(pModelDatabase);
    views::report(database, picture_->options(), path);
  });
}

STDMETHODIMP Report::get_Picture(IModelPicture** pVal) {
  *pVal = com::Ptr<Picture>(picture_).detach();
  return S_OK;
}

}  // namespace automation
