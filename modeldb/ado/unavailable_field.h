#pragma once

#include <string>

#include "modeldb/ado/ado_object.h"

namespace modeldb {

/// The members of a field that would change it, or read it in pieces.
class UnavailableField : public AdoObject<::Field, Field20, _ADO> {
 public:
  // _ADO
  STDMETHODIMP get_Properties(Properties**) override { return refuse(L"Properties"); }

  // Field20
  STDMETHODIMP put_Value(VARIANT) override { return refuse(L"Value"); }
  STDMETHODIMP AppendChunk(VARIANT) override { return refuse(L"AppendChunk"); }
  STDMETHODIMP GetChunk(LONG, VARIANT*) override { return refuse(L"GetChunk"); }
  STDMETHODIMP get_DataFormat(IUnknown**) override { return refuse(L"DataFormat"); }
  STDMETHODIMP putref_DataFormat(IUnknown*) override { return refuse(L"DataFormat"); }
  STDMETHODIMP put_Precision(unsigned char) override { return refuse(L"Precision"); }
  STDMETHODIMP put_NumericScale(unsigned char) override { return refuse(L"NumericScale"); }
  STDMETHODIMP put_Type(DataTypeEnum) override { return refuse(L"Type"); }
  STDMETHODIMP put_DefinedSize(ADO_LONGPTR) override { return refuse(L"DefinedSize"); }
  STDMETHODIMP put_Attributes(LONG) override { return refuse(L"Attributes"); }

 private:
  static HRESULT refuse(std::wstring_view member) {
    return not_available(L"Field." + std::wstring(member),
                         L"its fields can only be read. Change rows by SQL statements.");
  }
};

}  // namespace modeldb
