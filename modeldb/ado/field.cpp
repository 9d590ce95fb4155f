#include "modeldb/ado/field.h"

#include "com/bstr.h"
#include "modeldb/ado/model_call.h"
#include "modeldb/ado/value.h"
#include "modeldb/base/failure.h"

namespace modeldb {

/// The columns of the open query. The recordset may have been opened anew, with fewer.
const Columns& AdoField::columns() const {
  const Columns& columns = cursor_.query().columns();
  if (column_ >= columns.size()) {
    fail(kItemNotFound,
         L"The recordset was opened anew and has no such field any more. Take the "
         L"field from its Fields again.");
  }
  return columns;
}

DataTypeEnum AdoField::type() const { return ado_type(columns().declared_type(column_)); }

STDMETHODIMP AdoField::get_Value(VARIANT* val) {
  return model_call(cursor_.turns(), [&] {
    VariantInit(val);
    const Statement& row = cursor_.row();
    (void)columns();
    read_value(row, column_, val);
  });
}

STDMETHODIMP AdoField::get_ActualSize(ADO_LONGPTR* size) {
  return model_call(cursor_.turns(), [&] {
    const Statement& row = cursor_.row();
    (void)columns();
    *size = static_cast<ADO_LONGPTR>(row.size(column_));
  });
}

STDMETHODIMP AdoField::get_Name(BSTR* str) {
  return model_call(cursor_.turns(), [&] { *str = com::Bstr(columns().name(column_)).detach(); });
}

STDMETHODIMP AdoField::get_Type(DataTypeEnum* value) {
  return model_call(cursor_.turns(), [&] { *value = type(); });
}

STDMETHODIMP AdoField::get_DefinedSize(ADO_LONGPTR* size) {
  return model_call(cursor_.turns(), [&] {
    switch (type()) {
      case adInteger:
        *size = sizeof(LONG);
        break;
      case adDouble:
        *size = sizeof(double);
        break;
      default:
        *size = -1;
    }
  });
}

/// Decimal digits of a number; 255 means that the term does not apply.
STDMETHODIMP AdoField::get_Precision(unsigned char* precision) {
  return model_call(cursor_.turns(), [&] {
    switch (type()) {
      case adInteger:
        *precision = 10;
        break;
      case adDouble:
        *precision = 15;
        break;
      default:
        *precision = 255;
    }
  });
}

STDMETHODIMP AdoField::get_NumericScale(unsigned char* scale) {
  *scale = 255;
  return S_OK;
}

STDMETHODIMP AdoField::get_Attributes(LONG* attrs) {
  *attrs = adFldIsNullable | adFldMayBeNull;
  return S_OK;
}

STDMETHODIMP AdoField::get_Status(LONG* status) {
  *status = 0;  // adFieldOK, which the definitions lack
  return S_OK;
}

}  // namespace modeldb
