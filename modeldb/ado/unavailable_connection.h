#pragma once

#include <string>

#include "modeldb/ado/ado_object.h"

namespace modeldb {

/// The members of a connection that would set up what the model database sets up itself.
class UnavailableConnection : public AdoObject<_Connection, Connection15, _ADO> {
 public:
  // _ADO
  STDMETHODIMP get_Properties(Properties**) override { return refuse(L"Properties"); }

  // Connection15
  STDMETHODIMP put_ConnectionString(BSTR) override { return refuse(L"ConnectionString"); }
  STDMETHODIMP get_CommandTimeout(LONG*) override { return refuse(L"CommandTimeout"); }
  STDMETHODIMP put_CommandTimeout(LONG) override { return refuse(L"CommandTimeout"); }
  STDMETHODIMP get_ConnectionTimeout(LONG*) override { return refuse(L"ConnectionTimeout"); }
  STDMETHODIMP put_ConnectionTimeout(LONG) override { return refuse(L"ConnectionTimeout"); }
  STDMETHODIMP Close() override { return refuse(L"Close"); }
  STDMETHODIMP Open(BSTR, BSTR, BSTR, LONG) override { return refuse(L"Open"); }
  STDMETHODIMP get_Errors(Errors**) override { return refuse(L"Errors"); }
  STDMETHODIMP put_DefaultDatabase(BSTR) override { return refuse(L"DefaultDatabase"); }
  STDMETHODIMP get_IsolationLevel(IsolationLevelEnum*) override {
    return refuse(L"IsolationLevel");
  }
  STDMETHODIMP put_IsolationLevel(IsolationLevelEnum) override { return refuse(L"IsolationLevel"); }
  STDMETHODIMP get_Attributes(LONG*) override { return refuse(L"Attributes"); }
  STDMETHODIMP put_Attributes(LONG) override { return refuse(L"Attributes"); }
  STDMETHODIMP put_CursorLocation(CursorLocationEnum) override { return refuse(L"CursorLocation"); }
  STDMETHODIMP put_Mode(ConnectModeEnum) override { return refuse(L"Mode"); }
  STDMETHODIMP put_Provider(BSTR) override { return refuse(L"Provider"); }
  STDMETHODIMP OpenSchema(SchemaEnum, VARIANT, VARIANT, _Recordset**) override {
    return refuse(L"OpenSchema");
  }

  // _Connection
  STDMETHODIMP Cancel() override { return refuse(L"Cancel"); }

 private:
  static HRESULT refuse(std::wstring_view member) {
    return not_available(L"Connection." + std::wstring(member),
                         L"it opens, sets up and closes its connection itself.");
  }
};

}  // namespace modeldb
