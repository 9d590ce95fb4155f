#pragma once

#include "com/variant.h"
#include "modeldb/ado/factories.h"
#include "tests/engine/support.h"

namespace modeldb {

/// As the server executes the statements of its link tables.
constexpr LONG kTextWithoutRecords = LONG{adCmdText} | adExecuteNoRecords;

/// ADO's objects over a database with two forces.
class Ado : public WithDatabase {
 protected:
  Ado() {
    write(L"INSERT INTO Forces VALUES (1, 'Tip load', 2.5)");
    write(L"INSERT INTO Forces VALUES (2, 'Bob''s', NULL)");
  }

  /// A recordset made as a client makes one, by its class.
  static com::Ptr<_Recordset> new_recordset() {
    com::Ptr<_Recordset> rows;
    EXPECT_EQ(create_recordset(nullptr, __uuidof(_Recordset), rows.put_void()), S_OK);
    return rows;
  }

  [[nodiscard]] HRESULT open(const com::Ptr<_Recordset>& rows, std::wstring_view text,
                             LONG options = adCmdText) const {
    return rows->Open(com::Variant(com::Bstr(text)), com::Variant(connection_.get()),
                      adOpenForwardOnly, adLockReadOnly, options);
  }

  [[nodiscard]] com::Ptr<_Recordset> rows_of(std::wstring_view text) const {
    const auto rows = new_recordset();
    EXPECT_EQ(open(rows, text), S_OK);
    return rows;
  }

  static bool at_end(const com::Ptr<_Recordset>& rows) {
    VARIANT_BOOL end = 0;
    EXPECT_EQ(rows->get_EOF(&end), S_OK);
    return end != VARIANT_FALSE;
  }

  static com::Ptr<Field> field(const com::Ptr<_Recordset>& rows, const com::Variant& index) {
    com::Ptr<Fields> fields;
    EXPECT_EQ(rows->get_Fields(fields.put()), S_OK);
    com::Ptr<Field> field;
    EXPECT_EQ(fields->get_Item(index, field.put()), S_OK);
    return field;
  }

  static com::Variant value(const com::Ptr<_Recordset>& rows, std::wstring_view name) {
    com::Variant value;
    EXPECT_EQ(field(rows, com::Variant(com::Bstr(name)))->get_Value(value.put()), S_OK);
    return value;
  }

  HRESULT execute(std::wstring_view text, LONG options = kTextWithoutRecords) {
    com::Ptr<_Recordset> rows;
    return connection_->Execute(com::Bstr(text).get(), nullptr, options, rows.put());
  }

  com::Ptr<_Connection> connection_ = make_connection(database_);
};

}  // namespace modeldb
