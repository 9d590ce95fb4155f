#pragma once

#include <string>

#include "modeldb/ado/ado_object.h"

namespace modeldb {

/// The members of a command that would change how its text is run.
class UnavailableCommand : public AdoObject<_Command, Command25, Command15, _ADO> {
 public:
  // _ADO
  STDMETHODIMP get_Properties(Properties**) override { return refuse(L"Properties"); }

  // Command15
  STDMETHODIMP get_CommandTimeout(LONG*) override { return refuse(L"CommandTimeout"); }
  STDMETHODIMP put_CommandTimeout(LONG) override { return refuse(L"CommandTimeout"); }
  STDMETHODIMP get_Prepared(VARIANT_BOOL*) override { return refuse(L"Prepared"); }
  STDMETHODIMP put_Prepared(VARIANT_BOOL) override { return refuse(L"Prepared"); }
  STDMETHODIMP CreateParameter(BSTR, DataTypeEnum, ParameterDirectionEnum, ADO_LONGPTR, VARIANT,
                               _Parameter**) override {
    return refuse(L"CreateParameter");
  }
  STDMETHODIMP get_Parameters(Parameters**) override { return refuse(L"Parameters"); }
  STDMETHODIMP get_Name(BSTR*) override { return refuse(L"Name"); }
  STDMETHODIMP put_Name(BSTR) override { return refuse(L"Name"); }

  // Command25
  STDMETHODIMP Cancel() override { return refuse(L"Cancel"); }

  // _Command
  STDMETHODIMP putref_CommandStream(IUnknown*) override { return refuse(L"CommandStream"); }
  STDMETHODIMP get_CommandStream(VARIANT*) override { return refuse(L"CommandStream"); }
  STDMETHODIMP put_Dialect(BSTR) override { return refuse(L"Dialect"); }
  STDMETHODIMP get_Dialect(BSTR*) override { return refuse(L"Dialect"); }
  STDMETHODIMP put_NamedParameters(VARIANT_BOOL) override { return refuse(L"NamedParameters"); }
  STDMETHODIMP get_NamedParameters(VARIANT_BOOL*) override { return refuse(L"NamedParameters"); }

 private:
  static HRESULT refuse(std::wstring_view member) {
    return not_available(L"Command." + std::wstring(member),
                         L"a command runs its text at once and as it stands. Write the values "
                         L"into the text.");
  }
};

}  // namespace modeldb
