#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "com/ptr.h"
#include "com/variant.h"
#include "tests/host/ado_unused.h"

namespace fake {

/// A row of a query: what each column holds, by the names under which the row offers it.
using Row = std::map<std::wstring, com::Variant, std::less<>>;

/// What ADO answers for a column that a row does not have (adErrItemNotFound).
constexpr HRESULT kNoSuchColumn = static_cast<HRESULT>(0x800A0CC1);

class Field final : public UnusedField {
 public:
  Field(Journal& journal, com::Variant value)
      : UnusedField(journal, "Field"), value_(std::move(value)) {}
  STDMETHODIMP get_Value(VARIANT* value) override;

 private:
  com::Variant value_;
};

class Fields final : public UnusedFields {
 public:
  Fields(Journal& journal, const Row& row)
      : UnusedFields(journal, "Fields"), journal_(journal), row_(row) {}
  STDMETHODIMP get_Item(VARIANT name, ::Field** field) override;

 private:
  Journal& journal_;
  Row row_;
};

/// A recordset that stands at the first of its rows.
class Recordset final : public UnusedRecordset {
 public:
  Recordset(Journal& journal, const std::string& name, std::vector<Row> rows)
      : UnusedRecordset(journal, name), journal_(journal), rows_(std::move(rows)) {}

  /// The row at which it stands.
  [[nodiscard]] const Row& row() const { return rows_.at(position_); }

  STDMETHODIMP get_Fields(::Fields** fields) override;
  STDMETHODIMP Open(VARIANT source, VARIANT connection, CursorTypeEnum cursor, LockTypeEnum lock,
                    LONG options) override;
  STDMETHODIMP MoveFirst() override;
  STDMETHODIMP MoveNext() override;
  STDMETHODIMP get_EOF(VARIANT_BOOL* end) override;
  STDMETHODIMP Close() override { return note("Close"); }

 private:
  Journal& journal_;
  std::vector<Row> rows_;
  std::size_t position_ = 0;
};

class Connection final : public UnusedConnection {
 public:
  explicit Connection(Journal& journal) : UnusedConnection(journal, "Connection") {}
  STDMETHODIMP Execute(BSTR text, VARIANT* affected, LONG options, _Recordset** rows) override;
};

class Command final : public UnusedCommand {
 public:
  explicit Command(Journal& journal) : UnusedCommand(journal, "Command"), journal_(journal) {}
  STDMETHODIMP put_CommandText(BSTR text) override { return note("CommandText " + show(text)); }
  /// Gives a recordset back, which nobody is to look at.
  STDMETHODIMP Execute(VARIANT* affected, VARIANT* parameters, LONG options,
                       _Recordset** rows) override;

 private:
  Journal& journal_;
};

}  // namespace fake
