#include "tests/host/ado.h"

namespace fake {
namespace {

std::string present(const void* argument) { return argument ? "given " : "null "; }

}  // namespace

STDMETHODIMP Field::get_Value(VARIANT* value) {
  if (const HRESULT result = note("Value"); FAILED(result)) return result;
  return VariantCopy(value, com::mutable_address(value_));
}

STDMETHODIMP Fields::get_Item(VARIANT name, ::Field** field) {
  if (name.vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
  if (const HRESULT result = note("Item " + show(name.bstrVal)); FAILED(result)) return result;
  const auto found = row_.find(com::Bstr::view(name.bstrVal));
  if (found == row_.end()) return kNoSuchColumn;
  *field = com::Ptr<::Field>(new Field(journal_, found->second)).detach();
  return S_OK;
}

STDMETHODIMP Recordset::get_Fields(::Fields** fields) {
  if (const HRESULT result = note("Fields"); FAILED(result)) return result;
  *fields = com::Ptr<::Fields>(new Fields(journal_, row())).detach();
  return S_OK;
}

STDMETHODIMP Recordset::Open(VARIANT source, VARIANT connection, CursorTypeEnum cursor,
                             LockTypeEnum lock, LONG options) {
  return note("Open " + show(source) + ' ' + show(connection) + ' ' + std::to_string(cursor) + ' ' +
              std::to_string(lock) + ' ' + std::to_string(options));
}

STDMETHODIMP Recordset::MoveFirst() {
  position_ = 0;
  return note("MoveFirst");
}

STDMETHODIMP Recordset::MoveNext() {
  if (const HRESULT result = note("MoveNext"); FAILED(result)) return result;
  ++position_;
  return S_OK;
}

STDMETHODIMP Recordset::get_EOF(VARIANT_BOOL* end) {
  if (const HRESULT result = note("EOF"); FAILED(result)) return result;
  *end = position_ < rows_.size() ? VARIANT_FALSE : VARIANT_TRUE;
  return S_OK;
}

STDMETHODIMP Connection::Execute(BSTR text, VARIANT* affected, LONG options, _Recordset** rows) {
  *rows = nullptr;
  return note("Execute " + show(text) + ' ' + present(affected) + std::to_string(options));
}

STDMETHODIMP Command::Execute(VARIANT* affected, VARIANT* parameters, LONG options,
                              _Recordset** rows) {
  const HRESULT result =
      note("Execute " + present(affected) + present(parameters) + std::to_string(options));
  if (SUCCEEDED(result)) {
    *rows = com::Ptr<_Recordset>(new Recordset(journal_, "Result", {})).detach();
  }
  return result;
}

}  // namespace fake
