#pragma once

#include "tools/automation/picture.h"

namespace automation {

/// A report about an open model.
class Report : public com::AutomationObject<IModelReport, kLibrary> {
 public:
  /// Fails as Picture::Draw does.
  STDMETHODIMP Write(IDispatch* pModelDatabase, BSTR bstrPath) override;
  STDMETHODIMP get_Picture(IModelPicture** pVal) override;

 private:
  com::Ptr<Picture> picture_ = com::make<Picture>();
};

}  // namespace automation
