#pragma once

#include "modeldb/ado/cursor.h"
#include "modeldb/ado/unavailable_field.h"

namespace modeldb {

/// One field of a recordset: a live view of its column in the row at which the recordset stands.
class AdoField : public UnavailableField {
 public:
  AdoField(const Cursor& cursor, int column) : cursor_(cursor), column_(column) {}

  /// kNoCurrentRecord: the recordset stands on no row.
  STDMETHODIMP get_Value(VARIANT* val) override;
  STDMETHODIMP get_OriginalValue(VARIANT* val) override { return get_Value(val); }
  STDMETHODIMP get_UnderlyingValue(VARIANT* val) override { return get_Value(val); }
  /// Size of the value in bytes.
  STDMETHODIMP get_ActualSize(ADO_LONGPTR* size) override;

  STDMETHODIMP get_Name(BSTR* str) override;
  STDMETHODIMP get_Type(DataTypeEnum* type) override;
  /// Size in bytes of a number; -1 for what has no fixed size.
  STDMETHODIMP get_DefinedSize(ADO_LONGPTR* size) override;
  STDMETHODIMP get_Precision(unsigned char* precision) override;
  STDMETHODIMP get_NumericScale(unsigned char* scale) override;
  STDMETHODIMP get_Attributes(LONG* attrs) override;
  STDMETHODIMP get_Status(LONG* status) override;

 private:
  [[nodiscard]] const Columns& columns() const;
  [[nodiscard]] DataTypeEnum type() const;

  const Cursor& cursor_;
  int column_;
};

}  // namespace modeldb
