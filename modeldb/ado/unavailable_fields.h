#pragma once

#include <string>

#include "modeldb/ado/ado_object.h"

namespace modeldb {

/// The members of a list of fields that would change it.
class UnavailableFields : public AdoObject<::Fields, Fields20, Fields15, _Collection> {
 public:
  // Fields20
  STDMETHODIMP _Append(BSTR, DataTypeEnum, ADO_LONGPTR, FieldAttributeEnum) override {
    return refuse(L"_Append");
  }
  STDMETHODIMP Delete(VARIANT) override { return refuse(L"Delete"); }

  // Fields
  STDMETHODIMP Append(BSTR, DataTypeEnum, ADO_LONGPTR, FieldAttributeEnum, VARIANT) override {
    return refuse(L"Append");
  }
  STDMETHODIMP Update() override { return refuse(L"Update"); }
  STDMETHODIMP Resync(ResyncEnum) override { return refuse(L"Resync"); }
  STDMETHODIMP CancelUpdate() override { return refuse(L"CancelUpdate"); }

 private:
  static HRESULT refuse(std::wstring_view member) {
    return not_available(L"Fields." + std::wstring(member),
                         L"its fields are those that the statement selects.");
  }
};

}  // namespace modeldb
